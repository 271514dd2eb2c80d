#include "platform/digest.h"

#include <windows.h>

#include <bcrypt.h>

#include "base/errors.h"
#include "platform/windows/library_search.h"

namespace platform {

namespace {

// The library isn't among those that the system always takes from its own directory, so the program isn't
// linked to it.
struct DigestLibrary {
    decltype(&BCryptOpenAlgorithmProvider) openProvider = nullptr;
    decltype(&BCryptCreateHash) createHash = nullptr;
    decltype(&BCryptHashData) hashData = nullptr;
    decltype(&BCryptFinishHash) finishHash = nullptr;
    decltype(&BCryptDestroyHash) destroyHash = nullptr;
};

template <typename Function>
void resolve(HMODULE library, const char* name, Function& outFunction) {
    outFunction = reinterpret_cast<Function>(reinterpret_cast<void*>(GetProcAddress(library, name)));
    if (outFunction == nullptr) {
        throw OUtils::ExceptionMsg("The system offers no MD5 (%s is missing)", name);
    }
}

const DigestLibrary& digestLibrary() {
    static const DigestLibrary functions = [] {
        const HMODULE library = loadSystemLibrary(L"bcrypt.dll");
        if (library == nullptr) {
            throw OUtils::ExceptionMsg("The system offers no MD5 (bcrypt.dll: %lu)", GetLastError());
        }
        DigestLibrary found;
        resolve(library, "BCryptOpenAlgorithmProvider", found.openProvider);
        resolve(library, "BCryptCreateHash", found.createHash);
        resolve(library, "BCryptHashData", found.hashData);
        resolve(library, "BCryptFinishHash", found.finishHash);
        resolve(library, "BCryptDestroyHash", found.destroyHash);
        return found;
    }();
    return functions;
}

// Opening a provider takes longer than a small digest; one serves the whole process and all threads.
BCRYPT_ALG_HANDLE md5Provider() {
    static const BCRYPT_ALG_HANDLE provider = [] {
        BCRYPT_ALG_HANDLE opened = nullptr;
        const NTSTATUS status = digestLibrary().openProvider(&opened, BCRYPT_MD5_ALGORITHM, nullptr, 0);
        if (status < 0) {
            throw OUtils::ExceptionMsg("The system offers no MD5 (0x%08lx)",
                                       static_cast<unsigned long>(status));
        }
        return opened;
    }();
    return provider;
}

void require(NTSTATUS status) {
    if (status < 0) {
        throw OUtils::ExceptionMsg("Computing an MD5 failed (0x%08lx)", static_cast<unsigned long>(status));
    }
}

}  // namespace

struct Md5Context::State {
    State() { require(digestLibrary().createHash(md5Provider(), &hash, nullptr, 0, nullptr, 0, 0)); }
    ~State() { digestLibrary().destroyHash(hash); }
    State(const State&) = delete;
    State& operator=(const State&) = delete;

    BCRYPT_HASH_HANDLE hash = nullptr;
};

Md5Context::Md5Context() : state_(std::make_unique<State>()) {}

Md5Context::~Md5Context() = default;

void Md5Context::update(const void* data, std::size_t size) {
    constexpr std::size_t kLargestPiece = std::size_t{1} << 30;
    auto* bytes = static_cast<PUCHAR>(const_cast<void*>(data));  // the system doesn't change its input
    while (size > 0) {
        const std::size_t piece = size < kLargestPiece ? size : kLargestPiece;
        require(digestLibrary().hashData(state_->hash, bytes, static_cast<ULONG>(piece), 0));
        bytes += piece;
        size -= piece;
    }
}

std::array<std::uint8_t, 16> Md5Context::finish() {
    std::array<std::uint8_t, 16> digest{};
    require(digestLibrary().finishHash(state_->hash, digest.data(), static_cast<ULONG>(digest.size()), 0));
    return digest;
}

}  // namespace platform
