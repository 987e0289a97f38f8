// Services through the Service Control Manager. Both functions ask for full access, as administrators have it.
#pragma once

#include "ui/host.h"

#include <string>

namespace services {

// Changes the start type (SERVICE_AUTO_START, …) and nothing else of a service of this computer. The start type when
// the service could be opened, whether or not the change succeeded: the caller reads the real mode back. Otherwise -1.
long SetServiceStartMode(const std::wstring& service_name, DWORD start_type);

// Stops a service of a computer (empty for this one) and waits for its end: for the whole wait hint, again and again
// as long as the check point advances. `host` lives on during the wait, and ends it when its pump() says false.
// Non-zero when the stop request was accepted, even where the wait ended before the service did.
long ControlServiceAndWait(const std::wstring& machine_name, const std::wstring& service_name, ui::Host& host);

}  // namespace services
