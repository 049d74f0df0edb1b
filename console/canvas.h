/// Pictures by cairo: SVG, PDF and PNG.
#ifndef CONSOLE_CANVAS_H
#define CONSOLE_CANVAS_H

#include <memory>
#include <string>

#include "host/plot.h"

using cairo_t = struct _cairo;
using cairo_surface_t = struct _cairo_surface;

namespace console {

/// A page that is drawn on in memory. There may be one at a time.
class Canvas : public host::PlotCanvas {
  public:
    enum class Format { Svg, Pdf, Png };
    /// The format that a file name ends with. @return false for another ending
    static bool formatOf(const std::string& path, Format& format);

    /// @param width, height  of the page [mm]
    /// @param dots_per_inch  of a PNG
    Canvas(Format format, double width, double height, double dots_per_inch,
           host::PlotColor background);
    ~Canvas() override;
    Canvas(const Canvas&) = delete;
    Canvas& operator=(const Canvas&) = delete;

    void stroke(const host::PlotPaths& paths, const host::PlotPen& pen) override;
    void fill(const host::PlotPaths& paths, host::PlotColor color) override;
    void clip(const host::PlotPaths& paths) override;
    void unclip() override;
    void text(const std::string& utf8, const host::PlotText& place, host::PlotColor color) override;
    double textWidth(const std::string& utf8) override;

    /// Ends the page and gives the bytes of the file.
    /// @return false with a sentence in `error`
    bool finish(std::string& bytes, std::string& error);

  private:
    void trace(const host::PlotPaths& paths);
    void useColor(host::PlotColor color);

    Format format_;
    std::string bytes_;
    cairo_surface_t* surface_;
    cairo_t* cairo_;
    double capital_ = 0.73;  ///< height of a capital by the size of the font
};

}  // namespace console

#endif
