#pragma once

#include "component/automation.h"

namespace zelkova {

/// Makes every class creatable, for all users of the machine or, where the caller has no right to that, for
/// the caller alone. A registration for the machine ends one for the caller. Classes of an earlier build that
/// are gone are not cleaned up: unregister that build.
HRESULT registerServer();

/// Takes out what `registerServer` put in, for the machine and for the user. The other width's entries stay.
HRESULT unregisterServer();

}  // namespace zelkova
