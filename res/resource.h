// Resource numbers, shared by the resource script and the code.
#pragma once

#define IDI_APP 1
