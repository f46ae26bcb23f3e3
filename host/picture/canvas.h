#pragma once

#include <memory>
#include <string>
#include <vector>

#include "host/audio/temporary_file.h"

namespace orvelhost {

/// Each part 0..1.
struct Color {
  double red;
  double green;
  double blue;
  double opacity = 1.0;

  Color WithOpacity(double value) const { return {red, green, blue, value}; }
};

struct Point {
  double x;
  double y;
};

struct Box {
  double left;
  double top;
  double width;
  double height;

  double Right() const { return left + width; }
  double Bottom() const { return top + height; }
};

enum class Align { kLeft, kCenter, kRight };

struct TextStyle {
  double size = 18.0;  ///< the font's, in pixels
  Color color{};
  bool bold = false;
  Align align = Align::kLeft;
  double maxWidth = 0.0;  ///< in pixels; longer text loses its middle. 0: as long as it is
};

/// A picture in pixels, from its upper left corner; white at first.
class Canvas {
 public:
  Canvas(int width, int height);
  ~Canvas();
  Canvas(const Canvas&) = delete;
  Canvas& operator=(const Canvas&) = delete;

  void Fill(const Box& box, const Color& color);
  void Fill(const std::vector<Point>& outline, const Color& color);
  /// Connects the points. `dash` is the length of the dashes and of the gaps; 0 for none.
  void Line(const std::vector<Point>& points, double width, const Color& color, double dash = 0.0);
  /// One line of text, its middle at the height `y`. What is no UTF-8 shows as replacement
  /// characters, and line feeds as signs. Returns its width.
  double Text(double x, double y, const std::string& text, const TextStyle& style);

  /// Draws only within the box until the end of the scope.
  class Clip {
   public:
    Clip(Canvas& canvas, const Box& box);
    ~Clip();
    Clip(const Clip&) = delete;
    Clip& operator=(const Clip&) = delete;

   private:
    Canvas& canvas_;
  };

  /// Writes the picture as PNG. Throws AudioError.
  void WritePng(TemporaryFile& file);

 private:
  class Surface;
  std::unique_ptr<Surface> surface_;
};

}  // namespace orvelhost
