#include "component/Dispatch.h"

#include <new>
#include <optional>
#include <utility>

#include "component/AutomationHost.h"
#include "component/PlainArithmetic.h"
#include "component/arguments.h"
#include "component/identities.h"
#include "zelkova/frame/numberText.h"

namespace zelkova {

namespace {

/// A call that automation refuses by a code of its own, before any method runs.
struct Refusal {
  HRESULT code;
  std::optional<UINT> wrongArgument;
};

const Method* findMethod(const Class& description, const std::string& name) {
  for (const Method& method : description.methods) {
    if (sameIgnoringCase(method.name, name)) return &method;
  }
  return nullptr;
}

const Method* findMethod(const Class& description, DISPID id) {
  for (const Method& method : description.methods) {
    if (identities::ofMethod(method.name) == id) return &method;
  }
  return nullptr;
}

DISPID argumentId(const Method& method, const std::string& name) {
  for (std::size_t i = 0; i < method.arguments.size(); ++i) {
    if (sameIgnoringCase(method.arguments[i].name, name)) return static_cast<DISPID>(i);
  }
  return DISPID_UNKNOWN;
}

/// One call: what the client passed, sorted by the method's arguments.
class Call {
 public:
  Call(const Method& method, const DISPPARAMS& parameters, LCID locale)
      : method_(method), parameters_(parameters), locale_(locale), passed_(method.arguments.size()) {
    place();
    checkComplete();
  }

  /// Runs the method, gives the outputs back and answers the result.
  Value run(void* instance) {
    read();
    const UnshownMessages messages;
    Value result;
    try {
      result = method_.call(instance, values_);
    } catch (const Failure& failure) {
      giveBack(false);
      if (messages.texts().empty()) throw;
      throw Failure(failure.number(), messages.texts().front());
    }
    giveBack(true);
    if (!messages.texts().empty()) {
      throw Failure(static_cast<int>(FailureNumber::InvalidCall), messages.texts().front());
    }
    return result;
  }

 private:
  void place() {
    const std::size_t wanted = passed_.size();
    const UINT named = parameters_.cNamedArgs;
    if (named > parameters_.cArgs || (parameters_.cArgs > 0 && parameters_.rgvarg == nullptr) ||
        (named > 0 && parameters_.rgdispidNamedArgs == nullptr)) {
      throw Refusal{E_INVALIDARG, {}};
    }
    const bool spreads = wanted > 0 && method_.arguments.back().spread;
    // Arguments come last first, the named ones in front.
    for (UINT i = parameters_.cArgs; i-- > named;) {
      const std::size_t position = parameters_.cArgs - 1 - i;
      if (position < wanted) {
        passed_[position] = &parameters_.rgvarg[i];
      } else if (spreads) {
        spread_.push_back(&parameters_.rgvarg[i]);
      } else {
        throw Refusal{DISP_E_BADPARAMCOUNT, {}};
      }
    }
    for (UINT i = 0; i < named; ++i) {
      const DISPID id = parameters_.rgdispidNamedArgs[i];
      if (id < 0 || static_cast<std::size_t>(id) >= wanted ||
          passed_[static_cast<std::size_t>(id)] != nullptr) {
        throw Refusal{DISP_E_PARAMNOTFOUND, i};
      }
      passed_[static_cast<std::size_t>(id)] = &parameters_.rgvarg[i];
    }
  }

  void checkComplete() {
    for (std::size_t i = 0; i < passed_.size(); ++i) {
      const Argument& argument = method_.arguments[i];
      // A variable that holds "left out" can still take a result.
      const bool isVariable =
          passed_[i] != nullptr && (passed_[i]->vt & VT_BYREF) != 0 && argument.isOutput();
      if (passed_[i] != nullptr && !isVariable && isMissing(*passed_[i])) passed_[i] = nullptr;
      const bool needed = argument.isOutput() ? !argument.optional : argument.isNeeded();
      if (passed_[i] == nullptr && needed) throw Refusal{DISP_E_PARAMNOTOPTIONAL, static_cast<UINT>(i)};
    }
  }

  void read() {
    values_.resize(passed_.size());
    receivers_.resize(passed_.size());
    for (std::size_t i = 0; i < passed_.size(); ++i) {
      const Argument& argument = method_.arguments[i];
      if (passed_[i] == nullptr) continue;
      if (argument.isOutput()) receivers_[i].emplace(argument, *passed_[i]);
      if (isMissing(*passed_[i])) continue;
      values_[i] = argument.isInput() ? valueOf(argument, *passed_[i], locale_)
                                      : incomingValue(argument, *passed_[i], locale_);
    }
    if (!spread_.empty()) readSpread();
    incoming_ = scalarOutputs();
  }

  /// The elements of the last array, passed as arguments of their own.
  void readSpread() {
    const Argument& argument = method_.arguments.back();
    spread_.insert(spread_.begin(), passed_.back());
    std::vector<double> elements;
    for (const VARIANT* passed : spread_) {
      if (passed == nullptr || isMissing(*passed)) continue;
      const auto part = std::get<DoubleArray>(valueOf(argument, *passed, locale_));
      elements.insert(elements.end(), part.elements().begin(), part.elements().end());
    }
    values_.back() = DoubleArray(std::move(elements));
  }

  /// The scalar outputs as the method will find them.
  std::vector<Value> scalarOutputs() const {
    std::vector<Value> result(values_.size());
    for (std::size_t i = 0; i < values_.size(); ++i) {
      const Argument& argument = method_.arguments[i];
      if (!receivers_[i] || isArray(argument.type)) continue;
      result[i] = typeOf(values_[i]) == argument.type ? values_[i] : emptyValue(argument.type);
    }
    return result;
  }

  /// All outputs are made ready before the first is replaced. A method that was ended by a failure has
  /// assigned only what differs from what came in; there, a variable that cannot take its part is no reason
  /// to hide the failure.
  void giveBack(bool ended) {
    std::vector<Receiver*> ready;
    for (std::size_t i = 0; i < values_.size(); ++i) {
      if (!receivers_[i] || !isAssigned(i, ended)) continue;
      try {
        receivers_[i]->prepare(values_[i]);
      } catch (const Failure&) {
        if (ended) throw;
        continue;
      }
      ready.push_back(&*receivers_[i]);
    }
    for (Receiver* receiver : ready) receiver->commit();
  }

  bool isAssigned(std::size_t i, bool ended) const {
    if (!isArray(method_.arguments[i].type)) return ended || values_[i] != incoming_[i];
    return std::visit(
        [](const auto& held) {
          if constexpr (requires { held.filled(); }) return held.filled();
          return false;
        },
        values_[i]);
  }

  const Method& method_;
  const DISPPARAMS& parameters_;
  LCID locale_;
  std::vector<VARIANT*> passed_;        ///< by argument; a null pointer for one left out
  std::vector<const VARIANT*> spread_;  ///< what follows the last argument, where its elements may be spread
  std::vector<Value> values_;
  std::vector<Value> incoming_;
  std::vector<std::optional<Receiver>> receivers_;
};

}  // namespace

HRESULT reportCurrent(const std::string& source, EXCEPINFO* exception) noexcept {
  if (exception == nullptr) return DISP_E_EXCEPTION;
  *exception = {};
  const auto report = [&](const Failure& failure) {
    exception->scode = codeOf(failure);
    exception->bstrSource = newText(source);
    exception->bstrDescription = newText(failure.text());
  };
  exception->scode = static_cast<HRESULT>(0x800A0000U | static_cast<unsigned>(FailureNumber::OutOfMemory));
  try {
    try {
      throw;
    } catch (const Failure& failure) {
      report(failure);
    } catch (const std::bad_alloc&) {
      report(Failure(FailureNumber::OutOfMemory));
    } catch (const std::exception& error) {
      report(Failure(FailureNumber::Internal, error.what()));
    }
  } catch (...) {
    return DISP_E_EXCEPTION;  // no memory for words: the number alone has to do
  }
  return DISP_E_EXCEPTION;
}

Dispatch::Dispatch(const Class& description, std::shared_ptr<void> instance, std::string source)
    : description_(description), instance_(std::move(instance)), source_(std::move(source)) {
  IIDFromString(wide(identities::ofInterface(description.name)).c_str(), &interface_);
}

STDMETHODIMP Dispatch::GetIDsOfNames(REFIID reserved, LPOLESTR* names, UINT count, LCID, DISPID* ids) {
  if (reserved != IID_NULL) return DISP_E_UNKNOWNINTERFACE;
  if (count == 0) return S_OK;
  if (names == nullptr || ids == nullptr) return E_POINTER;
  try {
    std::vector<std::string> texts;
    for (UINT i = 0; i < count; ++i) {
      if (names[i] == nullptr) return E_POINTER;
      ids[i] = DISPID_UNKNOWN;
      texts.push_back(utf8(std::wstring_view(names[i])));
    }
    const Method* method = findMethod(description_, texts.front());
    if (method == nullptr) return DISP_E_UNKNOWNNAME;
    ids[0] = identities::ofMethod(method->name);
    bool known = true;
    for (UINT i = 1; i < count; ++i) {
      ids[i] = argumentId(*method, texts[i]);
      known = known && ids[i] != DISPID_UNKNOWN;
    }
    return known ? S_OK : DISP_E_UNKNOWNNAME;
  } catch (...) {
    return E_OUTOFMEMORY;
  }
}

STDMETHODIMP Dispatch::Invoke(DISPID member, REFIID reserved, LCID locale, WORD flags, DISPPARAMS* parameters,
                              VARIANT* result, EXCEPINFO* exception, UINT* wrongArgument) {
  if (reserved != IID_NULL) return DISP_E_UNKNOWNINTERFACE;
  if ((flags & (DISPATCH_METHOD | DISPATCH_PROPERTYGET)) == 0) return DISP_E_MEMBERNOTFOUND;
  // The last reference may go while the method runs: a message box lets the client's own code in.
  AddRef();
  HRESULT outcome = S_OK;
  try {
    const PlainArithmetic arithmetic;
    const Method* method = findMethod(description_, member);
    if (method == nullptr) throw Refusal{DISP_E_MEMBERNOTFOUND, {}};
    if (parameters == nullptr) throw Refusal{E_INVALIDARG, {}};
    const Value answer = Call(*method, *parameters, locale).run(instance_.get());
    if (result != nullptr) *result = resultVariant(answer).release();
  } catch (const Refusal& refusal) {
    if (wrongArgument != nullptr && refusal.wrongArgument) *wrongArgument = *refusal.wrongArgument;
    outcome = refusal.code;
  } catch (...) {
    outcome = reportCurrent(source_, exception);
  }
  Release();
  return outcome;
}

}  // namespace zelkova
