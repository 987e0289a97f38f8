// Whether work that is done again and again holds on to anything.
#pragma once

#include "support/counters.h"
#include "support/throw_away.h"

#include <doctest/doctest.h>

template <class Work>
void CheckHoldsOnToNothing(int warm_up, int rounds, long spare_kilobytes, Work&& work) {
    throw_away::RequireWine();
    for (int round = 0; round < warm_up; ++round)
        work();
    const Counters before = CountOwn();
    REQUIRE((before.handles > 0 && before.private_kilobytes > 0));
    for (int round = 0; round < rounds; ++round)
        work();
    const Counters after = CountOwn();
    CHECK(after.handles == before.handles);
    CHECK(after.gdi_objects == before.gdi_objects);
    CHECK(after.private_kilobytes <= before.private_kilobytes + spare_kilobytes);
}
