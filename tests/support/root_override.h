// Puts a test's key in the place of a registry root, for this process alone: what is read and deleted below the root
// is then the test's own.
#pragma once

#include "win/handle.h"

class RootOverride {
public:
    RootOverride(HKEY root, HKEY instead) : root_(root) { RegOverridePredefKey(root_, instead); }
    RootOverride(const RootOverride&) = delete;
    RootOverride& operator=(const RootOverride&) = delete;
    ~RootOverride() { RegOverridePredefKey(root_, nullptr); }

private:
    HKEY root_;
};
