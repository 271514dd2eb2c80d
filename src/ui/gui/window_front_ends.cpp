#include "ui/gui/window_front_ends.h"

#include <random>
#include <utility>

#include "platform/clock.h"
#include "ui/gui/wx_gui.h"

WindowFrontEnds::WindowFrontEnds(platform::ConsoleDevice& terminal, platform::FileSystem& files,
                                 OpenToolkit openToolkit)
    : terminal_(terminal), files_(files), openToolkit_(std::move(openToolkit)) {}

bool WindowFrontEnds::isAvailable(std::string& outReason) {
    if (toolkit_ == nullptr) {
        toolkit_ = openToolkit_(outReason);
    }
    return toolkit_ != nullptr;
}

std::unique_ptr<GenericUI> WindowFrontEnds::make(bool uninstall, AnswersFile& answers, DebugLog debugLog) {
    const auto seed = static_cast<std::minstd_rand::result_type>(platform::monotonicMilliseconds());
    const WxGUI::Surroundings surroundings = {
        *toolkit_,
        terminal_,
        answers,
        files_,
        platform::monotonicMilliseconds,
        [random = std::minstd_rand(seed)]() mutable { return static_cast<std::uint32_t>(random()); },
    };
    return std::make_unique<WxGUI>(uninstall, surroundings, debugLog);
}
