#pragma once

#include "contracts/install_exchange_info.h"
#include "fakes/recording_ui.h"

// Walks from the first page to the last; a session that doesn't end within a few pages is left there.
class WalkingUI : public RecordingUI {
public:
    static constexpr int kMostSteps = 10;

    explicit WalkingUI(InstallExchangeInfo& engine) : engine_(engine) {}

    int run() override {
        int result = 0;
        for (int step = 0; step < kMostSteps && !engine_.isFinished() && result == 0; ++step) {
            result = engine_.shift(this, 1);
        }
        return result;
    }

private:
    InstallExchangeInfo& engine_;
};
