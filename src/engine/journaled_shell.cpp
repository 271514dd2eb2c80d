#include "engine/journaled_shell.h"

#include "engine/journaled_files.h"
#include "engine/removal_journal.h"

template <typename Create>
int JournaledShellObjects::writeLink(std::string_view linkPath, Create create) {
    std::uint32_t record = 0;
    int status = files_.prepareWriting(linkPath, record);
    if (status != 0) {
        return status;
    }
    status = create();
    files_.finishWriting(linkPath, record, status);
    return status;
}

int JournaledShellObjects::createLink(std::string_view linkPath, const platform::LinkDescription& link) {
    return writeLink(linkPath, [&] { return shell_.createLink(linkPath, link); });
}

int JournaledShellObjects::createUrlLink(std::string_view linkPath, std::string_view url) {
    return writeLink(linkPath, [&] { return shell_.createUrlLink(linkPath, url); });
}

bool JournaledShellObjects::broadcastEnvironment() {
    RemovalRecord record;
    record.step = RemovalStep::kBroadcastEnvironment;
    return journal_.append(record, RemovalJournal::Durability::kFlushed) == 0 &&
           shell_.broadcastEnvironment();
}
