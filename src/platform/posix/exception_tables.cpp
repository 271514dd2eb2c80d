// The compiler's run-time library, which is linked statically, asks the C library for the exception tables of
// an address. That function is younger than the oldest C library that the programs shall run with, so they
// bring their own. It is slower, which only an exception notices.

#include <dlfcn.h>
#include <link.h>

#include <cstddef>

#ifdef DLFO_STRUCT_HAS_EH_DBASE

namespace {

struct Search {
    ElfW(Addr) address;
    dl_find_object* found;
};

// Calls `use(start, end)` for each segment of the type.
template <typename Use>
void forSegments(const dl_phdr_info& object, ElfW(Word) type, Use use) {
    for (ElfW(Half) i = 0; i < object.dlpi_phnum; ++i) {
        const ElfW(Phdr)& segment = object.dlpi_phdr[i];
        if (segment.p_type == type) {
            const ElfW(Addr) start = object.dlpi_addr + segment.p_vaddr;
            use(start, start + segment.p_memsz);
        }
    }
}

// Not 0 when the address belongs to the object; that ends the search.
int look(dl_phdr_info* object, std::size_t /*size*/, void* argument) {
    const auto& search = *static_cast<Search*>(argument);
    int found = 0;
    forSegments(*object, PT_LOAD, [&](ElfW(Addr) start, ElfW(Addr) end) {
        if (search.address >= start && search.address < end) {
            // The loader's table has numbers, the unwinder's has pointers.
            // NOLINTBEGIN(performance-no-int-to-ptr)
            search.found->dlfo_map_start = reinterpret_cast<void*>(start);
            search.found->dlfo_map_end = reinterpret_cast<void*>(end);
            // NOLINTEND(performance-no-int-to-ptr)
            found = 1;
        }
    });
    if (found != 0) {
        forSegments(*object, PT_GNU_EH_FRAME, [&](ElfW(Addr) start, ElfW(Addr)) {
            search.found->dlfo_eh_frame =
                reinterpret_cast<void*>(start);  // NOLINT(performance-no-int-to-ptr)
        });
    }
    return found;
}

}  // namespace

// Hidden, so that the libraries of the system keep theirs.
extern "C" __attribute__((visibility("hidden"))) int _dl_find_object(void* address,
                                                                     dl_find_object* result) noexcept {
    *result = {};
    Search search{reinterpret_cast<ElfW(Addr)>(address), result};
    return dl_iterate_phdr(look, &search) != 0 && result->dlfo_eh_frame != nullptr ? 0 : -1;
}

#endif
