// SessionTests.h: runs tests that live in real time.
#pragma once

namespace velmora::support {

/// Runs the tests that the command line chose; call it after `InitGoogleTest`. Returns the exit
/// code.
///
/// A block of sound lasts 2.7 ms. When the machine itself stood still for longer than that during
/// every test that failed, nobody could have kept the sound whole, and those tests run again in a
/// new process: three times at most, and the last time counts in any case.
int runSessionTests(char** argv);

} // namespace velmora::support
