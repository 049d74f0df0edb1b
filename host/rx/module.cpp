/// Loading of native modules. Their functions are found in the dynamic symbol table as it lies in
/// memory, so that no list of names has to be kept anywhere.
#include "rx/module.h"

#include <dlfcn.h>
#include <elf.h>
#include <link.h>

#include <algorithm>
#include <bit>
#include <cctype>
#include <cstring>
#include <filesystem>

#include "base/search_path.h"
#include "host/lisp.h"
#include "host/module.h"
#include "kz_tls21an/text.h"

namespace host {

namespace {

constexpr std::string_view kTwinSuffix = "_li";
/// What a module may export to hear that it was loaded, and the message that says so.
constexpr std::string_view kEntryPoint = "acrxEntryPoint";
constexpr int kInitialize = 1;
using EntryPoint = int (*)(int message, void* data);

/// The parts of a library's dynamic section that describe its symbols.
struct DynamicSymbols {
    const ElfW(Sym) * symbols = nullptr;
    const char* names = nullptr;
    const uint32_t* gnuHash = nullptr;
    const uint32_t* hash = nullptr;
};

DynamicSymbols readDynamic(const link_map& map) {
    DynamicSymbols found;
    for (const ElfW(Dyn)* entry = map.l_ld; entry->d_tag != DT_NULL; ++entry) {
        // The loader may have turned file offsets into addresses already.
        const ElfW(Addr) stored = entry->d_un.d_ptr;
        const ElfW(Addr) address = stored < map.l_addr ? stored + map.l_addr : stored;
        switch (entry->d_tag) {
            case DT_SYMTAB:
                found.symbols = std::bit_cast<const ElfW(Sym)*>(address);
                break;
            case DT_STRTAB:
                found.names = std::bit_cast<const char*>(address);
                break;
            case DT_GNU_HASH:
                found.gnuHash = std::bit_cast<const uint32_t*>(address);
                break;
            case DT_HASH:
                found.hash = std::bit_cast<const uint32_t*>(address);
                break;
            default:
                break;
        }
    }
    return found;
}

/// Number of symbols after a GNU hash table: one more than the last one of its longest-reaching
/// chain, which is marked by its lowest bit.
size_t countByGnuHash(const uint32_t* table) {
    const uint32_t bucketCount = table[0], firstHashed = table[1], filterWords = table[2];
    const auto* filter = reinterpret_cast<const ElfW(Addr)*>(table + 4);
    const auto* buckets = reinterpret_cast<const uint32_t*>(filter + filterWords);
    const uint32_t* chains = buckets + bucketCount;
    const uint32_t last = bucketCount == 0 ? 0 : *std::max_element(buckets, buckets + bucketCount);
    if (last < firstHashed) return firstHashed;
    size_t index = last;
    while ((chains[index - firstHashed] & 1) == 0)
        ++index;
    return index + 1;
}

size_t symbolCount(const DynamicSymbols& found) {
    if (found.gnuHash) return countByGnuHash(found.gnuHash);
    return found.hash ? found.hash[1] : 0;
}

bool isExportedFunction(const ElfW(Sym) & symbol) {
    const unsigned type = symbol.st_info & 0xF, binding = symbol.st_info >> 4;
    const unsigned visibility = symbol.st_other & 3;
    return symbol.st_shndx != SHN_UNDEF && type == STT_FUNC &&
           (binding == STB_GLOBAL || binding == STB_WEAK) &&
           (visibility == STV_DEFAULT || visibility == STV_PROTECTED);
}

}  // namespace

bool forEachExport(void* handle,
                   const std::function<void(std::string_view name, void* address)>& visit) {
    link_map* map = nullptr;
    if (dlinfo(handle, RTLD_DI_LINKMAP, &map) != 0 || !map) return false;
    const DynamicSymbols found = readDynamic(*map);
    if (!found.symbols || !found.names) return false;
    const size_t count = symbolCount(found);
    for (size_t i = 0; i < count; ++i) {
        const ElfW(Sym)& symbol = found.symbols[i];
        if (!isExportedFunction(symbol)) continue;
        visit(found.names + symbol.st_name, std::bit_cast<void*>(map->l_addr + symbol.st_value));
    }
    return true;
}

namespace {

std::vector<std::string>& moduleList() {
    static std::vector<std::string> modules;
    return modules;
}

}  // namespace

std::string moduleName(const std::string& file) {
    std::string name = std::filesystem::path(plainPath(file)).stem().string();
    if (name.starts_with("lib")) name.erase(0, 3);
    std::transform(name.begin(), name.end(), name.begin(),
                   [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    return name;
}

const std::vector<std::string>& loadedModules() {
    return moduleList();
}

bool loadModule(const std::string& path, std::string& error, int* count) {
    void* const handle = dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL);
    if (!handle) {
        error = dlerror();
        return false;
    }
    int defined = 0;
    EntryPoint entry = nullptr;
    const bool readable = forEachExport(handle, [&](std::string_view name, void* address) {
        if (name == kEntryPoint) entry = reinterpret_cast<EntryPoint>(address);
        if (!name.ends_with(kTwinSuffix) || name.size() == kTwinSuffix.size()) return;
        name.remove_suffix(kTwinSuffix.size());
        defineNative(kz::toUtf16(name), reinterpret_cast<int (*)()>(address));
        ++defined;
    });
    if (!readable) {
        error = path + ": no dynamic symbols";
        dlclose(handle);
        return false;
    }
    if (entry != nullptr && entry(kInitialize, nullptr) != 0) {
        error = path + ": the module refuses to start";
        return false;
    }
    std::vector<std::string>& modules = moduleList();
    const std::string name = moduleName(path);
    if (std::find(modules.begin(), modules.end(), name) == modules.end()) modules.push_back(name);
    if (count) *count = defined;
    return true;
}

}  // namespace host
