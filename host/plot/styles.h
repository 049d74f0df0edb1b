/// Colour, width and line type of entities as they are seen: by their layer and by the insertions
/// that they are in.
#ifndef HOST_PLOT_STYLES_H
#define HOST_PLOT_STYLES_H

#include <string>
#include <unordered_map>
#include <vector>

#include "db/database.h"
#include "host/plot.h"

namespace host {

struct PlotStyle {
    PlotColor color;
    double width = 0.25;         ///< [mm]
    std::vector<double> dashes;  ///< as the line type has them: positive dashes, negative gaps,
                                 ///< zero dots [drawing units, by $LTSCALE]
};

/// What an insertion hands down to the contents of its block.
struct PlotContext {
    PlotStyle layer;      ///< of the layer that layer 0 stands for
    PlotStyle own;        ///< for what is drawn "by block"
    bool plotted = true;  ///< false on a layer that is for the screen only
};

/// Styles in one drawing, which does not change meanwhile.
class StyleBook {
  public:
    StyleBook(Database& drawing, bool dark);
    /// Of a drawing that is attached under a name. The outermost drawing that has a layer as
    /// NAME|LAYER says what it looks like.
    StyleBook(Database& drawing, StyleBook& outer, const std::u16string& name);

    /// @param outer  the insertion that the entity stands in; NULL for none
    /// @return the entity's own style, and that of its layer
    PlotContext styleOf(Slot entity, const PlotContext* outer);

  private:
    struct Layer {
        PlotStyle style;
        bool zero = false;
        bool plotted = true;
    };
    const Layer& layerNamed(const std::u16string& name);
    void describeLayer(Slot record, Layer& layer);
    /// The book of the outermost drawing that knows a layer of this one, and its record there.
    StyleBook& holderOf(const std::u16string& name, Slot& record);
    const std::vector<double>& lineType(const std::u16string& name);
    PlotColor colorOf(const Tags& tags, const PlotStyle& by_layer, const PlotStyle& by_block) const;

    Database& drawing_;
    bool dark_;
    StyleBook* outer_ = nullptr;
    std::u16string prefix_;
    double default_width_ = 0.25;
    double scale_ = 1.0;
    std::unordered_map<std::u16string, Layer> layers_;
    std::unordered_map<std::u16string, std::vector<double>> line_types_;
};

}  // namespace host

#endif
