#include "host/picture/canvas.h"

#include <algorithm>
#include <new>

// The macros of these headers are written for C.
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wold-style-cast"
#include <pango/pangocairo.h>
#pragma GCC diagnostic pop

#include "host/audio/audio_error.h"

namespace orvelhost {
namespace {

template <auto kFree>
struct FreeBy {
  template <typename T>
  void operator()(T* object) const {
    kFree(object);
  }
};

/// Where the bytes of the PNG go, and what went wrong there.
struct Output {
  const TemporaryFile& file;
  int error = 0;
};

cairo_status_t WriteBytes(void* closure, const unsigned char* bytes, unsigned count) {
  Output& output = *static_cast<Output*>(closure);
  output.error = output.file.Write(bytes, count);
  return output.error == 0 ? CAIRO_STATUS_SUCCESS : CAIRO_STATUS_WRITE_ERROR;
}

}  // namespace

class Canvas::Surface {
 public:
  Surface(int width, int height)
      : image_(cairo_image_surface_create(CAIRO_FORMAT_RGB24, width, height)),
        cairo_(cairo_create(image_.get())),
        layout_(pango_cairo_create_layout(cairo_.get())) {
    if (cairo_status(cairo_.get()) != CAIRO_STATUS_SUCCESS) {
      throw std::bad_alloc();
    }
    cairo_set_line_join(cairo_.get(), CAIRO_LINE_JOIN_ROUND);
    // Whatever this machine's screen likes: the same picture everywhere.
    const std::unique_ptr<cairo_font_options_t, FreeBy<cairo_font_options_destroy>> options(
        cairo_font_options_create());
    cairo_font_options_set_antialias(options.get(), CAIRO_ANTIALIAS_GRAY);
    cairo_font_options_set_hint_style(options.get(), CAIRO_HINT_STYLE_NONE);
    cairo_font_options_set_hint_metrics(options.get(), CAIRO_HINT_METRICS_OFF);
    pango_cairo_context_set_font_options(pango_layout_get_context(layout_.get()), options.get());
    pango_layout_set_single_paragraph_mode(layout_.get(), TRUE);
    pango_layout_set_ellipsize(layout_.get(), PANGO_ELLIPSIZE_MIDDLE);
  }

  cairo_t* Cairo() const { return cairo_.get(); }
  cairo_surface_t* Image() const { return image_.get(); }
  PangoLayout* Layout() const { return layout_.get(); }

  void SetColor(const Color& color) const {
    cairo_set_source_rgba(cairo_.get(), color.red, color.green, color.blue, color.opacity);
  }

  void Trace(const std::vector<Point>& points) const {
    cairo_new_path(cairo_.get());
    for (const Point& point : points) {
      cairo_line_to(cairo_.get(), point.x, point.y);
    }
  }

 private:
  std::unique_ptr<cairo_surface_t, FreeBy<cairo_surface_destroy>> image_;
  std::unique_ptr<cairo_t, FreeBy<cairo_destroy>> cairo_;
  std::unique_ptr<PangoLayout, FreeBy<g_object_unref>> layout_;
};

Canvas::Canvas(int width, int height) : surface_(std::make_unique<Surface>(width, height)) {
  Fill(Box{0, 0, static_cast<double>(width), static_cast<double>(height)}, {1, 1, 1});
}
Canvas::~Canvas() = default;

void Canvas::Fill(const Box& box, const Color& color) {
  surface_->SetColor(color);
  cairo_rectangle(surface_->Cairo(), box.left, box.top, box.width, box.height);
  cairo_fill(surface_->Cairo());
}

void Canvas::Fill(const std::vector<Point>& outline, const Color& color) {
  surface_->SetColor(color);
  surface_->Trace(outline);
  cairo_fill(surface_->Cairo());
}

void Canvas::Line(const std::vector<Point>& points, double width, const Color& color, double dash) {
  surface_->SetColor(color);
  surface_->Trace(points);
  cairo_set_line_width(surface_->Cairo(), width);
  cairo_set_dash(surface_->Cairo(), &dash, dash > 0.0 ? 1 : 0, 0.0);
  cairo_stroke(surface_->Cairo());
}

double Canvas::Text(double x, double y, const std::string& text, const TextStyle& style) {
  PangoLayout* layout = surface_->Layout();
  const std::unique_ptr<PangoFontDescription, FreeBy<pango_font_description_free>> font(
      pango_font_description_new());
  pango_font_description_set_family_static(font.get(), "DejaVu Sans");
  pango_font_description_set_absolute_size(font.get(), style.size * PANGO_SCALE);
  pango_font_description_set_weight(font.get(),
                                    style.bold ? PANGO_WEIGHT_BOLD : PANGO_WEIGHT_NORMAL);
  pango_layout_set_font_description(layout, font.get());
  pango_layout_set_width(
      layout, style.maxWidth > 0.0 ? static_cast<int>(style.maxWidth * PANGO_SCALE) : -1);
  const std::unique_ptr<char, FreeBy<g_free>> valid(
      g_utf8_make_valid(text.data(), static_cast<gssize>(text.size())));
  pango_layout_set_text(layout, valid.get(), -1);

  PangoRectangle extents{};
  pango_layout_get_extents(layout, nullptr, &extents);
  const double width = static_cast<double>(extents.width) / PANGO_SCALE;
  const double share = style.align == Align::kLeft ? 0.0 : style.align == Align::kRight ? 1.0 : 0.5;
  surface_->SetColor(style.color);
  cairo_move_to(surface_->Cairo(), x - share * width - static_cast<double>(extents.x) / PANGO_SCALE,
                y - static_cast<double>(extents.height) / PANGO_SCALE / 2.0);
  pango_cairo_show_layout(surface_->Cairo(), layout);
  return width;
}

Canvas::Clip::Clip(Canvas& canvas, const Box& box) : canvas_(canvas) {
  cairo_t* cairo = canvas_.surface_->Cairo();
  cairo_save(cairo);
  cairo_rectangle(cairo, box.left, box.top, box.width, box.height);
  cairo_clip(cairo);
}

Canvas::Clip::~Clip() { cairo_restore(canvas_.surface_->Cairo()); }

void Canvas::WritePng(TemporaryFile& file) {
  Output output{file};
  const cairo_status_t status =
      cairo_surface_write_to_png_stream(surface_->Image(), &WriteBytes, &output);
  if (status != CAIRO_STATUS_SUCCESS) {
    if (output.error != 0) throw AudioError("write", file.Target(), output.error);
    throw AudioError("write", file.Target(), cairo_status_to_string(status));
  }
}

}  // namespace orvelhost
