// Two files that change places: tests/platform/posix/ways_of_moving.cpp stands before the system there.
#pragma once

// Asked before they do; false: the system fails with an error of the storage. Null: nobody is asked.
extern bool (*g_pMayChangePlaces)();
