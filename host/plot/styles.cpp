/// Styles of entities. A colour index stands for a hue, one of five depths and a full or a half
/// saturation; the first nine and the last six are fixed.
#include "plot/styles.h"

#include <algorithm>
#include <cmath>

#include "edit/tag_values.h"
#include "kz_tls21an/text.h"

namespace host {
namespace {

constexpr int kColor = 62, kTrueColor = 420, kWeight = 370, kLineType = 6, kLineScale = 48;
constexpr int64_t kByBlock = 0, kByLayer = 256;
constexpr int64_t kWeightByLayer = -1, kWeightByBlock = -2;

/// Full saturation at a hue [sixths of a turn], as a share of the greatest channel.
double channel(double hue, double turn) {
    const double way = std::fabs(std::remainder(hue - turn, 6.0));
    return std::clamp(2.0 - way, 0.0, 1.0);
}

PlotColor wheelColor(int index) {
    constexpr int kDepths[] = {255, 165, 127, 76, 38};
    const int place = index / 10 - 1;
    const double hue = place * 0.25;
    const int depth = kDepths[index % 10 / 2];
    const bool pale = index % 2 != 0;
    const auto mix = [&](double turn) {
        const double full = channel(hue, turn);
        return static_cast<uint8_t>(depth * (pale ? 0.5 + full / 2 : full));
    };
    return {mix(0.0), mix(2.0), mix(4.0)};
}

std::u16string textOf(const Tags& tags, int code, const dxf::TextCodec& codec) {
    const size_t at = findTag(tags, code);
    return at < tags.size() ? tags[at].text(codec) : std::u16string();
}

double widthOf(int64_t hundredths, double otherwise) {
    return hundredths >= 0 ? std::max(0.05, static_cast<double>(hundredths) / 100.0) : otherwise;
}

}  // namespace

PlotColor plotColor(int index, bool dark) {
    constexpr PlotColor kFirst[] = {{255, 0, 0},     {255, 255, 0},   {0, 255, 0},
                                    {0, 255, 255},   {0, 0, 255},     {255, 0, 255},
                                    {255, 255, 255}, {128, 128, 128}, {192, 192, 192}};
    constexpr uint8_t kGreys[] = {51, 91, 132, 173, 214, 255};
    if (index < 1 || index > 255 || index == 7 || (index == 255 && !dark)) {
        return dark ? kFirst[6] : PlotColor{};
    }
    if (index < 10) return kFirst[index - 1];
    if (index < 250) return wheelColor(index);
    const uint8_t grey = kGreys[index - 250];
    return {grey, grey, grey};
}

StyleBook::StyleBook(Database& drawing, bool dark) : drawing_(drawing), dark_(dark) {
    const HeaderVariable* scale = drawing.header("$LTSCALE");
    if (scale != nullptr && !scale->tags.empty()) scale_ = scale->tags.front().real();
    if (!std::isfinite(scale_) || scale_ <= 0.0) scale_ = 1.0;
}

StyleBook::StyleBook(Database& drawing, StyleBook& outer, const std::u16string& name)
    : StyleBook(drawing, outer.dark_) {
    outer_ = &outer;
    prefix_ = name;
    prefix_ += u'|';
}

PlotColor StyleBook::colorOf(const Tags& tags, const PlotStyle& by_layer,
                             const PlotStyle& by_block) const {
    const size_t exact = findTag(tags, kTrueColor);
    if (exact < tags.size()) {
        const int64_t rgb = tags[exact].integer();
        return {static_cast<uint8_t>(rgb >> 16), static_cast<uint8_t>(rgb >> 8),
                static_cast<uint8_t>(rgb)};
    }
    const int64_t index = integerOf(tags, kColor, kByLayer);
    if (index == kByLayer) return by_layer.color;
    if (index == kByBlock) return by_block.color;
    return plotColor(static_cast<int>(std::abs(index)), dark_);
}

const std::vector<double>& StyleBook::lineType(const std::u16string& name) {
    const auto [found, made] = line_types_.try_emplace(kz::toUpper(name));
    if (!made) return found->second;
    const Slot record = drawing_.findSymbol("LTYPE", name);
    if (record == kNoSlot) return found->second;
    for (const Tag& tag : drawing_.tags(record)) {
        if (tag.code() == 49 && std::isfinite(tag.real()))
            found->second.push_back(tag.real() * scale_);
    }
    return found->second;
}

StyleBook& StyleBook::holderOf(const std::u16string& name, Slot& record) {
    if (outer_ != nullptr) {
        StyleBook& holder = outer_->holderOf(prefix_ + name, record);
        if (record != kNoSlot) return holder;
    }
    record = drawing_.findSymbol("LAYER", name);
    return *this;
}

void StyleBook::describeLayer(Slot record, Layer& layer) {
    constexpr int kPlotted = 290;
    PlotStyle& style = layer.style;
    const Tags& tags = drawing_.tags(record);
    style.color = colorOf(tags, style, style);
    style.width = widthOf(integerOf(tags, kWeight, -3), default_width_);
    style.dashes = lineType(textOf(tags, kLineType, drawing_.codec()));
    layer.plotted = layer.plotted && integerOf(tags, kPlotted, 1) != 0;
}

const StyleBook::Layer& StyleBook::layerNamed(const std::u16string& name) {
    const auto [found, made] = layers_.try_emplace(name);
    Layer& layer = found->second;
    if (!made) return layer;
    layer.zero = name == u"0";
    // What dimensions are measured from is never plotted.
    layer.plotted = kz::compareNoCase(name, u"DEFPOINTS") != 0;
    layer.style.color = plotColor(7, dark_);
    layer.style.width = default_width_;
    Slot record = kNoSlot;
    StyleBook& holder = holderOf(name, record);
    if (record != kNoSlot) holder.describeLayer(record, layer);
    return layer;
}

PlotContext StyleBook::styleOf(Slot entity, const PlotContext* outer) {
    const Tags& tags = drawing_.tags(entity);
    std::u16string name = textOf(tags, 8, drawing_.codec());
    if (name.empty()) name.assign(1, u'0');
    const Layer& layer = layerNamed(name);
    PlotContext context;
    const bool by_outer = layer.zero && outer != nullptr;
    context.layer = by_outer ? outer->layer : layer.style;
    context.plotted = by_outer ? outer->plotted : layer.plotted;
    PlotStyle plain;
    plain.color = plotColor(7, dark_);
    plain.width = default_width_;
    const PlotStyle& by_block = outer != nullptr ? outer->own : plain;
    context.own.color = colorOf(tags, context.layer, by_block);
    const int64_t weight = integerOf(tags, kWeight, kWeightByLayer);
    context.own.width = weight == kWeightByLayer   ? context.layer.width
                        : weight == kWeightByBlock ? by_block.width
                                                   : widthOf(weight, default_width_);
    const std::u16string type = kz::toUpper(textOf(tags, kLineType, drawing_.codec()));
    context.own.dashes = type.empty() || type == u"BYLAYER" ? context.layer.dashes
                         : type == u"BYBLOCK"               ? by_block.dashes
                                                            : lineType(type);
    const double scale = realOf(tags, kLineScale, 1.0);
    if (std::isfinite(scale) && scale > 0.0 && scale != 1.0) {
        for (double& length : context.own.dashes)
            length *= scale;
    }
    return context;
}

}  // namespace host
