#pragma once

#include "zelkova/frame/Failure.h"

namespace zelkova {

/// The number of the failure that `call` ends in, 0 where it ends well.
template <class Call>
int failureNumber(Call call) {
  try {
    call();
  } catch (const Failure& failure) {
    return failure.number();
  }
  return 0;
}

/// The text of the failure that `call` ends in, empty where it ends well.
template <class Call>
std::string failureText(Call call) {
  try {
    call();
  } catch (const Failure& failure) {
    return failure.text();
  }
  return {};
}

}  // namespace zelkova
