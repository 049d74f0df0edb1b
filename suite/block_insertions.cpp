/// Block insertions on their way into the drawing.
#include <cmath>
#include <memory>
#include <string>
#include <unordered_map>

#include "cadservice.h"

struct kz_CADObject {
    std::u16string block;
    std::u16string layer;
    kz_Point point;
    double scale[3];
};

namespace {

using Objects = std::unordered_map<kz_CADObject*, std::unique_ptr<kz_CADObject>>;

/// Those that were made and not added yet.
Objects& objects() {
    static Objects living;
    return living;
}

/// A chain that is built node by node and released at the end. A failed node sticks.
class Chain {
  public:
    Chain() = default;
    ~Chain() { acutRelRb(head_); }
    Chain(const Chain&) = delete;
    Chain& operator=(const Chain&) = delete;

    resbuf* add(int code) {
        if (failed_) return nullptr;
        *tail_ = acutNewRb(code);
        failed_ = *tail_ == nullptr;
        if (failed_) return nullptr;
        resbuf* const node = *tail_;
        tail_ = &node->rbnext;
        return node;
    }
    void addText(int code, const std::u16string& text) {
        resbuf* const node = add(code);
        if (node == nullptr) return;
        node->resval.rstring = kz_Str_dup(text.c_str());
        failed_ = node->resval.rstring == nullptr;
    }
    void addReal(int code, double value) {
        resbuf* const node = add(code);
        if (node != nullptr) node->resval.rreal = value;
    }
    void addPoint(int code, const kz_Point& point) {
        resbuf* const node = add(code);
        if (node == nullptr) return;
        node->resval.rpoint[0] = point.x;
        node->resval.rpoint[1] = point.y;
        node->resval.rpoint[2] = point.z;
    }
    /// NULL after a failure.
    const resbuf* list() const { return failed_ ? nullptr : head_; }

  private:
    resbuf* head_ = nullptr;
    resbuf** tail_ = &head_;
    bool failed_ = false;
};

bool isFactor(double value) {
    return std::isfinite(value) && value != 0.0;
}

}  // namespace

kz_CADObject* kz_CADBlockIns3d_create(const kz_Char* block, const kz_Char* source,
                                      const kz_Point* point, double xScale, double yScale,
                                      double zScale, const kz_Char* layer) {
    return suite::guarded<kz_CADObject*>(nullptr, [&]() -> kz_CADObject* {
        if (block == nullptr || *block == 0 || point == nullptr) return nullptr;
        if (source != nullptr && *source != 0) return nullptr;
        if (!isFactor(xScale) || !isFactor(yScale) || !isFactor(zScale)) return nullptr;
        auto made = std::make_unique<kz_CADObject>(
            kz_CADObject{block, layer == nullptr ? u"" : layer, *point, {xScale, yScale, zScale}});
        kz_CADObject* const object = made.get();
        objects().emplace(object, std::move(made));
        return object;
    });
}

int kz_CADObject_addToDrawing(kz_CADObject* object) {
    return suite::guarded(0, [&] {
        const auto taken = objects().extract(object);
        if (taken.empty()) return 0;
        Chain list;
        list.addText(0, u"INSERT");
        if (!object->layer.empty()) list.addText(8, object->layer);
        list.addText(2, object->block);
        list.addPoint(10, object->point);
        for (int i = 0; i < 3; ++i)
            list.addReal(41 + i, object->scale[i]);
        return list.list() != nullptr && acdbEntMakeX(list.list(), nullptr) == RTNORM ? 1 : 0;
    });
}
