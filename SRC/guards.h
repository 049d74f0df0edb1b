/// Owners of what the library makes or opens for the time of one call. The destructors only tidy
/// early returns; what succeeds is closed or handed on by name.
#ifndef SRC_GUARDS_H
#define SRC_GUARDS_H

#include <memory>
#include <utility>

#include "kz/kz_rb.h"

namespace kz {

template <auto Destroy>
struct Destroyer {
    template <class T>
    void operator()(T* object) const {
        Destroy(object);
    }
};

/// A result-buffer chain.
using OwnedChain = std::unique_ptr<resbuf, Destroyer<kz_ResBuf_release>>;
/// A field list.
using OwnedFldList = std::unique_ptr<kz_FldList, Destroyer<kz_FldList_destroy>>;
/// A list of strings.
using OwnedStrList = std::unique_ptr<kz_StrList, Destroyer<kz_StrList_destroy>>;
/// A text on the runtime's heap.
using OwnedText = std::unique_ptr<kz_Char, Destroyer<kz_Free>>;

/// A database object while it is open.
template <class T>
class Opened {
  public:
    Opened() = default;
    /// Takes an object that is open, or NULL.
    explicit Opened(T* object) : object_(object) {}
    /// Opens the object behind an entity name; nothing is open for a name that leads nowhere.
    Opened(const ads_name name, AcDb::OpenMode mode, bool open_erased) {
        AcDbObjectId id;
        if (acdbGetObjectId(id, name) != Acad::eOk) return;
        if (acdbOpenObject(object_, id, mode, open_erased) != Acad::eOk) object_ = nullptr;
    }
    ~Opened() { close(); }
    Opened(Opened&& other) noexcept : object_(std::exchange(other.object_, nullptr)) {}
    Opened& operator=(Opened&& other) noexcept {
        std::swap(object_, other.object_);
        return *this;
    }
    Opened(const Opened&) = delete;
    Opened& operator=(const Opened&) = delete;

    explicit operator bool() const { return object_ != nullptr; }
    T* operator->() const { return object_; }
    T* get() const { return object_; }

    /// Ends the opening. @return true when something was open and closed well
    bool close() {
        if (object_ == nullptr) return false;
        const Acad::ErrorStatus status = object_->close();
        object_ = nullptr;
        return status == Acad::eOk;
    }

  private:
    T* object_ = nullptr;
};

}  // namespace kz

#endif
