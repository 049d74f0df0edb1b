/// Making, comparing and freeing of values. List cells come from a pool of their own, since
/// programs make and drop millions of them.
#include "lisp/value.h"

#include <cstring>
#include <new>
#include <vector>

#if defined(__SANITIZE_ADDRESS__)
#define HOST_LISP_PLAIN_CELLS 1
#elif defined(__has_feature)
#if __has_feature(address_sanitizer)
#define HOST_LISP_PLAIN_CELLS 1
#endif
#endif

namespace host::lisp {

namespace {

#ifdef HOST_LISP_PLAIN_CELLS
// The sanitizer sees a use after the end only when each cell is an allocation of its own.
void* takeCell() {
    return ::operator new(sizeof(Cons));
}
void returnCell(void* cell) noexcept {
    ::operator delete(cell);
}
#else
constexpr size_t kCellsInSlab = 2048;

struct FreeCell {
    FreeCell* next;
};
FreeCell* freeCells = nullptr;

// Slabs stay for the life of the program: values in static storage may outlive any owner of them.
void addSlab() {
    auto* slab = static_cast<char*>(::operator new(kCellsInSlab * sizeof(Cons)));
    for (size_t i = kCellsInSlab; i-- > 0;) {
        freeCells = new (slab + i * sizeof(Cons)) FreeCell{freeCells};
    }
}

void* takeCell() {
    if (!freeCells) addSlab();
    FreeCell* cell = freeCells;
    freeCells = cell->next;
    return cell;
}

void returnCell(void* cell) noexcept {
    freeCells = new (cell) FreeCell{freeCells};
}
#endif

/// Objects without last references to others, or whose members free themselves in a bounded way.
void destroyLeaf(Object* object) noexcept {
    switch (static_cast<Kind>(object->kind)) {
        case Kind::Text:
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
    void* memory = ::operator new(sizeof(Text) + length * sizeof(char16_t));
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
