// SessionTest.h: tests that share one private session per suite.
#pragma once

#include "support/PrivateSession.h"
#include "support/SessionDevices.h"

#include <gtest/gtest.h>
#include <iostream>
#include <memory>
#include <utility>

namespace velmora::support {

/// Brings speakers, a four-channel interface and the virtual microphone, and makes this process
/// part of the session. Shows the services' logs after a failed test.
class SessionTest : public ::testing::Test {
protected:
    static void SetUpTestSuite() { begin({.devices = {speakers, interface4}}); }
    /// For a suite that wants another session. What is heard in it waits for the late as well.
    static void begin(PrivateSession::Setup setup) {
        setup.patientClock = true;
        beginInTime(std::move(setup));
    }
    /// For figures: whoever is late loses a block, as beside a sound card.
    static void beginInTime(PrivateSession::Setup setup) {
        session_ = std::make_unique<PrivateSession>(std::move(setup));
        session_->enter();
    }
    static void TearDownTestSuite() { session_.reset(); }

    void TearDown() override {
        if (HasFailure()) {
            std::cerr << session_->logTails();
        }
    }

    static PrivateSession& session() { return *session_; }

private:
    static inline std::unique_ptr<PrivateSession> session_;
};

} // namespace velmora::support
