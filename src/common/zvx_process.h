#pragma once

namespace zavex {

/**
 * Settles how this process and the system deal with each other. Call once, first in `main`.
 *
 * The first SIGINT, SIGTERM or SIGHUP asks to quit, see `isQuitSignalled`, and a further one ends
 * the process as if nothing were installed. One that follows within a tenth of a second belongs to
 * the first: a session that is closed may send SIGTERM and SIGHUP in one go. A SIGHUP that was
 * ignored stays ignored.
 *
 * A write into a broken pipe, or beyond the largest size of a file, fails instead of ending the
 * process. A standard stream that is closed becomes "/dev/null", so that no file takes its number
 * and receives what is printed.
 */
void prepareProcess();

/** Whether a signal has asked to quit; from then on always. */
bool isQuitSignalled();

/**
 * Prints "cadenza: " and the message, formatted printf-style, on standard error, behind all that
 * was printed on standard output. It becomes one line, whatever line ends it has. Allocates
 * nothing.
 */
[[gnu::format(printf, 1, 2)]] void reportFailure(const char* format, ...);

} // namespace zavex
