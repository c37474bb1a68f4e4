// SessionTests.h: runs tests that live in real time.
#pragma once

namespace velmora::support {

/// Runs the tests that the command line chose; call it after `InitGoogleTest`. Returns the exit
/// code.
///
/// A block of sound lasts 2.7 ms. When the machine itself stood still for longer than that during
/// every test that failed, nobody could have kept the sound whole, and those tests run again in a
/// new process, up to three times in all. After that the exit code is `notJudged`, which counts as
/// a failure but for the suites whose subject are single blocks of sound.
int runSessionTests(char** argv);

/// Known to tests/CMakeLists.txt.
inline constexpr int notJudged = 77;

} // namespace velmora::support
