/// The canvas on cairo. User space is millimetres of the page.
#include "canvas.h"

#include <cairo-pdf.h>
#include <cairo-svg.h>
#include <cairo.h>
#include <fontconfig/fontconfig.h>

#include <algorithm>
#include <cmath>

namespace console {

namespace {

constexpr double kPointsPerMillimetre = 72.0 / 25.4;

extern "C" cairo_status_t append(void* target, const unsigned char* data, unsigned int length) {
    static_cast<std::string*>(target)->append(reinterpret_cast<const char*>(data), length);
    return CAIRO_STATUS_SUCCESS;
}

cairo_surface_t* makeSurface(Canvas::Format format, double width, double height, double scale,
                             std::string& bytes) {
    switch (format) {
        case Canvas::Format::Svg:
            return cairo_svg_surface_create_for_stream(append, &bytes, width * scale,
                                                       height * scale);
        case Canvas::Format::Pdf:
            return cairo_pdf_surface_create_for_stream(append, &bytes, width * scale,
                                                       height * scale);
        default:
            return cairo_image_surface_create(CAIRO_FORMAT_RGB24,
                                              static_cast<int>(std::lround(width * scale)),
                                              static_cast<int>(std::lround(height * scale)));
    }
}

}  // namespace

bool Canvas::formatOf(const std::string& path, Format& format) {
    const size_t dot = path.rfind('.');
    std::string ending = dot == std::string::npos ? "" : path.substr(dot + 1);
    std::transform(ending.begin(), ending.end(), ending.begin(),
                   [](unsigned char letter) { return static_cast<char>(std::tolower(letter)); });
    if (ending == "svg") format = Format::Svg;
    if (ending == "pdf") format = Format::Pdf;
    if (ending == "png") format = Format::Png;
    return ending == "svg" || ending == "pdf" || ending == "png";
}

Canvas::Canvas(Format format, double width, double height, double dots_per_inch,
               host::PlotColor background)
    : format_(format) {
    const double scale = format == Format::Png ? dots_per_inch / 25.4 : kPointsPerMillimetre;
    surface_ = makeSurface(format, width, height, scale, bytes_);
    cairo_ = cairo_create(surface_);
    cairo_scale(cairo_, scale, scale);
    useColor(background);
    cairo_paint(cairo_);
    cairo_set_fill_rule(cairo_, CAIRO_FILL_RULE_EVEN_ODD);
    cairo_select_font_face(cairo_, "DejaVu Sans", CAIRO_FONT_SLANT_NORMAL,
                           CAIRO_FONT_WEIGHT_NORMAL);
    cairo_set_font_size(cairo_, 100.0);
    cairo_text_extents_t extents;
    cairo_text_extents(cairo_, "H", &extents);
    if (extents.height > 10.0) capital_ = extents.height / 100.0;
}

Canvas::~Canvas() {
    cairo_destroy(cairo_);
    cairo_surface_destroy(surface_);
    // The fonts that were found are kept for the next picture, and there is none.
    cairo_debug_reset_static_data();
    FcFini();
}

void Canvas::useColor(host::PlotColor color) {
    cairo_set_source_rgb(cairo_, color.red / 255.0, color.green / 255.0, color.blue / 255.0);
}

void Canvas::trace(const host::PlotPaths& paths) {
    cairo_new_path(cairo_);
    for (const host::PlotPath& path : paths) {
        for (size_t i = 0; i < path.points.size(); ++i) {
            const auto step = i == 0 ? cairo_move_to : cairo_line_to;
            step(cairo_, path.points[i].x, path.points[i].y);
        }
        if (path.closed && !path.points.empty()) cairo_close_path(cairo_);
    }
}

void Canvas::stroke(const host::PlotPaths& paths, const host::PlotPen& pen) {
    trace(paths);
    useColor(pen.color);
    cairo_set_line_width(cairo_, pen.width);
    cairo_set_line_cap(cairo_, pen.round ? CAIRO_LINE_CAP_ROUND : CAIRO_LINE_CAP_BUTT);
    cairo_set_line_join(cairo_, pen.round ? CAIRO_LINE_JOIN_ROUND : CAIRO_LINE_JOIN_MITER);
    cairo_set_dash(cairo_, pen.dashes.data(), static_cast<int>(pen.dashes.size()), 0.0);
    cairo_stroke(cairo_);
}

void Canvas::fill(const host::PlotPaths& paths, host::PlotColor color) {
    trace(paths);
    useColor(color);
    cairo_fill(cairo_);
}

void Canvas::clip(const host::PlotPaths& paths) {
    cairo_save(cairo_);
    trace(paths);
    cairo_clip(cairo_);
}

void Canvas::unclip() {
    cairo_restore(cairo_);
}

double Canvas::textWidth(const std::string& utf8) {
    cairo_set_font_size(cairo_, 100.0);
    cairo_text_extents_t extents;
    cairo_text_extents(cairo_, utf8.c_str(), &extents);
    return extents.x_advance / 100.0 / capital_;
}

void Canvas::text(const std::string& utf8, const host::PlotText& place, host::PlotColor color) {
    const double along_x = (place.along.x - place.origin.x) / capital_;
    const double along_y = (place.along.y - place.origin.y) / capital_;
    const double up_x = (place.up.x - place.origin.x) / capital_;
    const double up_y = (place.up.y - place.origin.y) / capital_;
    // Letters that nobody could see make no font.
    constexpr double kLeastArea = 1e-4;
    if (!(std::fabs(along_x * up_y - along_y * up_x) > kLeastArea)) return;
    cairo_matrix_t matrix;
    cairo_matrix_init(&matrix, along_x, along_y, -up_x, -up_y, 0.0, 0.0);
    cairo_set_font_matrix(cairo_, &matrix);
    useColor(color);
    cairo_move_to(cairo_, place.origin.x, place.origin.y);
    cairo_show_text(cairo_, utf8.c_str());
}

bool Canvas::finish(std::string& bytes, std::string& error) {
    cairo_status_t status = cairo_status(cairo_);
    if (status == CAIRO_STATUS_SUCCESS && format_ == Format::Png) {
        status = cairo_surface_write_to_png_stream(surface_, append, &bytes_);
    }
    cairo_surface_finish(surface_);
    if (status == CAIRO_STATUS_SUCCESS) status = cairo_surface_status(surface_);
    if (status != CAIRO_STATUS_SUCCESS) {
        error = cairo_status_to_string(status);
        return false;
    }
    bytes = std::move(bytes_);
    return true;
}

}  // namespace console
