#pragma once

#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace npar_host {

/// Shapes of an SVG picture. Coordinates are its units, of which a plot is kPlotWidth wide; a
/// page's style gives the classes their colours.
class Drawing {
 public:
  void Line(double x1, double y1, double x2, double y2, std::string_view shapeClass);
  void Box(double x, double y, double width, double height, std::string_view shapeClass);
  struct Corner {
    double x, y, width;
  };
  /// Boxes of one height as a single shape.
  void Boxes(const std::vector<Corner>& boxes, double height, std::string_view shapeClass);
  void Dot(double x, double y, double radius, std::string_view shapeClass);
  using Points = std::vector<std::pair<double, double>>;
  /// Dots, or a line through the points of each of several, as a single shape; the class gives
  /// their width.
  void Dots(const Points& points, std::string_view shapeClass);
  void Lines(const std::vector<Points>& lines, std::string_view shapeClass);
  void Diamond(double x, double y, double radius, std::string_view shapeClass);
  /// Straight lines through the points (x, y), (x, y) ...
  void Polyline(const Points& points, std::string_view shapeClass);
  /// A curve from one point to the other that bends towards a third.
  void Curve(double x1, double y1, double bendX, double bendY, double x2, double y2,
             std::string_view shapeClass);
  /// The anchor is "start", "middle" or "end".
  void Text(double x, double y, std::string_view anchor, std::string_view text,
            std::string_view shapeClass);
  /// A name, cut where the room may not hold all of it: without the beginning that it shares with
  /// the names beside it, of so many bytes, or else without its middle. Then the whole of it is
  /// told where a pointer rests.
  void Name(double x, double y, std::string_view anchor, std::string_view text, double room,
            std::string_view shapeClass = "name", std::size_t shared = 0);
  [[nodiscard]] const std::string& Markup() const { return markup; }

 private:
  std::string markup;
};

constexpr double kPlotWidth = 440.0;
constexpr double kWidePlotWidth = 920.0;  // of a plot as wide as the page

/// A picture with its description in words. Texts are not yet escaped.
struct Plot {
  std::string kind;         // "histogram", "box-plots"; a class of the figure
  std::string title;        // what is shown
  std::string description;  // what there is to see, for who cannot see it
  std::string note;         // how to read it; stands under the picture
  Drawing drawing;
  double width = kPlotWidth;
  double height = 240.0;
  std::string values;  // markup of a table of what is drawn; may be empty
};

/// How many bytes all of the names begin with alike, up to the beginning of a word.
[[nodiscard]] std::size_t SharedBeginning(const std::vector<std::string>& names);

/// Maps an interval of values onto one of coordinates.
struct Scale {
  double low = 0.0;
  double high = 1.0;
  double from = 0.0;
  double to = 1.0;

  [[nodiscard]] double operator()(double value) const {
    return from + (to - from) * ((value - low) / (high - low));
  }
};

/// The scale over the finite ones of the values, with some room at its ends.
[[nodiscard]] Scale ScaleOver(const std::vector<double>& values, double from, double to);
/// A round step (1, 2 or 5 times a power of ten) that divides a range into about `parts`.
[[nodiscard]] double RoundStep(double range, double parts);
/// A horizontal axis at height y with ticks at round values and a title below.
void DrawAxisBelow(Drawing& drawing, const Scale& scale, double y, std::string_view title);
/// Grid lines and ticks at round values, to the left of x.
void DrawAxisLeft(Drawing& drawing, const Scale& scale, double x, double right, bool wholeNumbers);

}  // namespace npar_host
