#include "platform/windows/window_probe/list_rows.h"

#include <commctrl.h>

#include <algorithm>

#include "platform/windows/wide_text.h"

namespace {

constexpr LRESULT kMostRows = 1000;
constexpr int kLongestText = 1024;

// What a message of a list view points to lies in the list's process.
struct Request {
    LVITEMW item;
    wchar_t text[kLongestText];
};

class RemoteRequest {
public:
    explicit RemoteRequest(HWND window) : process_(openOwner(window)) {
        if (process_) {
            place_ = VirtualAllocEx(process_.get(), nullptr, sizeof(Request), MEM_COMMIT, PAGE_READWRITE);
        }
    }
    ~RemoteRequest() {
        if (place_ != nullptr) {
            VirtualFreeEx(process_.get(), place_, 0, MEM_RELEASE);
        }
    }
    RemoteRequest(const RemoteRequest&) = delete;
    RemoteRequest& operator=(const RemoteRequest&) = delete;

    explicit operator bool() const { return place_ != nullptr; }
    LPARAM place() const { return reinterpret_cast<LPARAM>(place_); }
    wchar_t* textPlace() const { return reinterpret_cast<Request*>(place_)->text; }
    bool write(const Request& request) {
        return WriteProcessMemory(process_.get(), place_, &request, sizeof request, nullptr) != 0;
    }
    bool read(Request& outRequest) {
        return ReadProcessMemory(process_.get(), place_, &outRequest, sizeof outRequest, nullptr) != 0;
    }

private:
    static HANDLE openOwner(HWND window) {
        DWORD process = 0;
        GetWindowThreadProcessId(window, &process);
        return OpenProcess(PROCESS_VM_OPERATION | PROCESS_VM_READ | PROCESS_VM_WRITE, FALSE, process);
    }

    platform::Handle process_;
    void* place_ = nullptr;
};

bool readRow(HWND list, int index, WindowMessages& messages, RemoteRequest& remote, ListRow& outRow) {
    Request request{};
    request.item.mask = LVIF_TEXT | LVIF_IMAGE;
    request.item.iItem = index;
    request.item.pszText = remote.textPlace();
    request.item.cchTextMax = kLongestText;
    if (!remote.write(request) || !messages.ask(list, LVM_GETITEMW, 0, remote.place()) ||
        !remote.read(request)) {
        return false;
    }
    request.text[kLongestText - 1] = L'\0';
    outRow = {request.text, request.item.iImage};
    return true;
}

}  // namespace

std::vector<ListRow> listRows(HWND list, WindowMessages& messages) {
    std::vector<ListRow> rows;
    // Memory of a program that hangs isn't touched: the system might wait for it.
    const LRESULT count = messages.ask(list, LVM_GETITEMCOUNT).value_or(0);
    if (count <= 0) {
        return rows;
    }
    RemoteRequest remote(list);
    ListRow row;
    for (int i = 0; remote && i < std::min(count, kMostRows) && readRow(list, i, messages, remote, row);
         ++i) {
        rows.push_back(row);
    }
    return rows;
}
