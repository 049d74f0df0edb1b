/// Making, comparing and freeing of values. List cells come from a pool of their own, since
/// programs make and drop millions of them. Cells and texts are counted: beyond the limit they end
/// in an error, before the machine runs out of memory.
#include "lisp/value.h"

#include <sys/mman.h>

#include <cstdlib>
#include <vector>

#include "base/system_memory.h"

#if defined(__SANITIZE_ADDRESS__)
#define HOST_LISP_PLAIN_CELLS 1
#elif defined(__has_feature)
#if __has_feature(address_sanitizer)
#define HOST_LISP_PLAIN_CELLS 1
#endif
#endif

namespace host::lisp {

namespace {

/// Bytes of cells and texts that are in use, and how many may be.
size_t usedBytes = 0;

size_t memoryLimit() {
    static const size_t limit = [] {
        if (const char* text = std::getenv("KZ_LISP_MEMORY")) {
            const auto megabytes = std::strtoull(text, nullptr, 10);
            if (megabytes > 0) return static_cast<size_t>(megabytes) << 20U;
        }
        return systemMemory() / 2;
    }();
    return limit;
}

void account(size_t bytes, const char* space) {
    if (bytes > memoryLimit() - usedBytes) throw OutOfSpace(space);
    usedBytes += bytes;
}

constexpr const char* kNodeSpace = "insufficient node space";
constexpr const char* kTextSpace = "insufficient string space";
constexpr size_t kLongestText = size_t{1} << 30;

#ifdef HOST_LISP_PLAIN_CELLS
// The sanitizer sees a use after the end only when each cell is an allocation of its own.
void* takeCell() {
    account(sizeof(Cons), kNodeSpace);
    return ::operator new(sizeof(Cons));
}
void returnCell(void* cell) noexcept {
    usedBytes -= sizeof(Cons);
    ::operator delete(cell);
}
#else
// A slab is aligned to its size, so that a cell finds the slab it stands in. Half as many as are in
// use may be empty, the rest is given back; values in static storage may outlive any owner of
// slabs, so nothing else frees them.
constexpr size_t kSlabSize = size_t{1} << 20;

struct FreeCell {
    FreeCell* next;
};

struct Slab {
    Slab* previous;
    Slab* next;      ///< of the slabs with room
    FreeCell* free;  ///< cells that were given back
    uint32_t used;   ///< cells given out and not given back
    uint32_t begun;  ///< cells that were given out at least once
};

constexpr size_t kFirstCell = (sizeof(Slab) + sizeof(Cons) - 1) / sizeof(Cons);
constexpr uint32_t kCellsInSlab = kSlabSize / sizeof(Cons) - kFirstCell;

constexpr size_t kSlabsKept = 16;

/// Slabs with cells given out and room for more, and those without any.
Slab* slabsWithRoom = nullptr;
Slab* emptySlabs = nullptr;
size_t slabCount = 0, emptyCount = 0;

void link(Slab*& list, Slab* slab) {
    slab->previous = nullptr;
    slab->next = list;
    if (list) list->previous = slab;
    list = slab;
}

void unlink(Slab*& list, Slab* slab) {
    (slab->previous ? slab->previous->next : list) = slab->next;
    if (slab->next) slab->next->previous = slab->previous;
}

/// Pages of the system for a slab, aligned to its size; NULL when there are none.
void* mapSlab() {
    const size_t size = 2 * kSlabSize;
    void* mapped =
        ::mmap(nullptr, size, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    if (mapped == MAP_FAILED) return nullptr;
    auto* begin = static_cast<char*>(mapped);
    const size_t past = reinterpret_cast<uintptr_t>(begin) % kSlabSize;
    char* const slab = past == 0 ? begin : begin + (kSlabSize - past);
    if (slab != begin) ::munmap(begin, static_cast<size_t>(slab - begin));
    char* const behind = slab + kSlabSize;
    ::munmap(behind, static_cast<size_t>(begin + size - behind));
    return slab;
}

void addSlab() {
    account(kSlabSize, kNodeSpace);
    void* memory = mapSlab();
    if (!memory) {
        usedBytes -= kSlabSize;
        throw OutOfSpace(kNodeSpace);
    }
    link(slabsWithRoom, new (memory) Slab{});
    ++slabCount;
}

void needSlab() {
    if (!emptySlabs) return addSlab();
    Slab* const slab = emptySlabs;
    unlink(emptySlabs, slab);
    --emptyCount;
    link(slabsWithRoom, slab);
}

void releaseEmptySlabs() {
    while (emptyCount > kSlabsKept + (slabCount - emptyCount) / 2) {
        Slab* const slab = emptySlabs;
        unlink(emptySlabs, slab);
        --emptyCount;
        --slabCount;
        usedBytes -= kSlabSize;
        ::munmap(slab, kSlabSize);
    }
}

void* takeCell() {
    if (!slabsWithRoom) needSlab();
    Slab* const slab = slabsWithRoom;
    void* cell = slab->free;
    if (cell) {
        slab->free = slab->free->next;
    } else {
        cell = reinterpret_cast<char*>(slab) + (kFirstCell + slab->begun++) * sizeof(Cons);
    }
    if (++slab->used == kCellsInSlab) unlink(slabsWithRoom, slab);
    return cell;
}

void returnCell(void* cell) noexcept {
    const auto place = reinterpret_cast<uintptr_t>(cell) & ~uintptr_t{kSlabSize - 1};
    auto* slab = reinterpret_cast<Slab*>(place);  // NOLINT(performance-no-int-to-ptr)
    slab->free = new (cell) FreeCell{slab->free};
    if (slab->used-- == kCellsInSlab) link(slabsWithRoom, slab);
    if (slab->used != 0) return;
    unlink(slabsWithRoom, slab);
    link(emptySlabs, slab);
    ++emptyCount;
    releaseEmptySlabs();
}
#endif

size_t bytesOfText(size_t length) {
    return sizeof(Text) + length * sizeof(char16_t);
}

/// Objects without last references to others, or whose members free themselves in a bounded way.
void destroyLeaf(Object* object) noexcept {
    switch (static_cast<Kind>(object->kind)) {
        case Kind::Text:
            usedBytes -= bytesOfText(static_cast<Text*>(object)->length);
            ::operator delete(object);
            break;
        case Kind::Symbol:
            delete static_cast<Symbol*>(object);
            break;
        case Kind::Subr:
            delete static_cast<Subr*>(object);
            break;
        case Kind::External:
            delete static_cast<External*>(object);
            break;
        case Kind::EntityName:
            delete static_cast<EntityName*>(object);
            break;
        case Kind::SelectionSet:
            delete static_cast<SelectionSet*>(object);
            break;
        case Kind::File:
            delete static_cast<File*>(object);
            break;
        case Kind::CaughtError:
            delete static_cast<CaughtError*>(object);
            break;
        case Kind::Cons:
        case Kind::UserFunction:
            break;
    }
}

/// Frees one object and gives the two objects that died with it, NULL where none did.
std::pair<Object*, Object*> dismantle(Object* object) noexcept {
    std::pair<Object*, Object*> freed{nullptr, nullptr};
    if (object->kind == static_cast<uint32_t>(Kind::Cons)) {
        auto* cell = static_cast<Cons*>(object);
        freed = {cell->car.takeLast(), cell->cdr.takeLast()};
        returnCell(cell);
    } else if (object->kind == static_cast<uint32_t>(Kind::UserFunction)) {
        auto* function = static_cast<UserFunction*>(object);
        freed = {function->parameterList.takeLast(), function->body.takeLast()};
        delete function;
    } else {
        destroyLeaf(object);
    }
    return freed;
}

/// Dead objects whose turn has not come. Never destroyed, since values may be freed by static
/// objects.
std::vector<Object*>& pendingObjects() {
    static auto& objects = *new std::vector<Object*>;
    return objects;
}

}  // namespace

void destroy(Object* object) noexcept {
    std::vector<Object*>& pending = pendingObjects();
    const size_t bottom = pending.size();
    while (object) {
        const auto [first, second] = dismantle(object);
        if (first && second) pending.push_back(first);
        object = second ? second : first;
        if (!object && pending.size() > bottom) {
            object = pending.back();
            pending.pop_back();
        }
    }
}

void File::close() {
    if (stream) std::fclose(stream);
    stream = nullptr;
}

Value makeCons(Value car, Value cdr) {
    return Value::adopt(new (takeCell()) Cons(std::move(car), std::move(cdr)));
}

Value makeBlankText(size_t length) {
    if (length > kLongestText) throw OutOfSpace(kTextSpace);
    account(bytesOfText(length), kTextSpace);
    void* memory = ::operator new(bytesOfText(length));
    return Value::adopt(new (memory) Text(static_cast<uint32_t>(length)));
}

Value makeText(std::u16string_view units) {
    return makeText(units, {});
}

Value makeText(std::u16string_view first, std::u16string_view second) {
    Value text = makeBlankText(first.size() + second.size());
    char16_t* units = text.as<Text>()->units();
    first.copy(units, first.size());
    second.copy(units + first.size(), second.size());
    return text;
}

Value makeEntityName(const ads_name name) {
    return Value::adopt(new EntityName(name));
}

bool isEq(const Value& a, const Value& b) {
    if (a.same(b)) return true;
    if (a.isReal() && b.isReal()) return a.real() == b.real();  // 0.0 and -0.0
    if (a.isText() && b.isText()) return a.text() == b.text();
    if (a.is(Kind::EntityName) && b.is(Kind::EntityName)) {
        return ads_name_equal(a.as<EntityName>()->name, b.as<EntityName>()->name);
    }
    return false;
}

int32_t listLength(const Value& list) {
    int32_t length = 0;
    const Value* rest = &list;
    for (; rest->isCons(); rest = &rest->cons()->cdr)
        ++length;
    return rest->isNil() ? length : -1;
}

}  // namespace host::lisp
