#pragma once

/// How a process without memory ends: at once, in a status that tells whether a function of Qt
/// or the C library has failed, or another one, and with a line about the place.
namespace EndOfProcess
{

/// The exit statuses for a process that has used memory which it did not get, or was aborted, and
/// for one that waits for a lock that nobody will open.
struct Statuses {
    int ended;
    int endedInLibrary;
    int waits;
    int waitsInLibrary;
};

/// Ends this process in one of these ways from now on. The line is written to @p report; standard
/// output and error are closed.
void watch(const Statuses &statuses, int report);

/// Loads what the above needs, while there is memory.
void prepare();

} // namespace EndOfProcess
