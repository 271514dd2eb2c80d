#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>

// Makes calls that know no limit, such as those of objects of other programs, on a thread of its own. All of
// them share one apartment: one for each call would cost more than the call. The thread is left behind with a
// call that doesn't come back, and the next call gets another one.
class AskingThread {
public:
    using Call = std::function<std::optional<std::string>()>;

    // Nothing when the call has no result, or none within some seconds.
    std::optional<std::string> ask(Call call);

private:
    class Desk;
    static std::shared_ptr<Desk> begin();

    std::shared_ptr<Desk> desk_;  // shared with the thread; none when there is no thread
};
