#include "host/render/html/drawing.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>

#include "arithmetic/elementary.h"
#include "host/render/html/markup.h"

namespace npar_host {
namespace {

constexpr double kTickLength = 4.0;

// One decimal: a tenth of a unit is below what an eye sees.
std::string Coordinate(double value) {
  if (!std::isfinite(value)) value = 0.0;
  const double tenths = std::round(std::clamp(value, -1e6, 1e6) * 10.0) / 10.0;
  std::array<char, 32> digits;
  const auto [end, error] =
      std::to_chars(digits.data(), digits.data() + digits.size(), tenths == 0.0 ? 0.0 : tenths);
  return {digits.data(), end};
}

std::string Attribute(std::string_view name, double value) {
  return " " + std::string(name) + "=\"" + Coordinate(value) + "\"";
}

std::string Class(std::string_view shapeClass) {
  return " class=\"" + std::string(shapeClass) + "\"";
}

// The step is a power of ten times 1, 2 or 5: rounding to 12 digits takes the error of its
// multiples away.
std::string TickText(double value) {
  std::array<char, 32> digits;
  const auto [end, error] = std::to_chars(digits.data(), digits.data() + digits.size(), value,
                                          std::chars_format::general, 12);
  return {digits.data(), end};
}

std::vector<double> Ticks(const Scale& scale, double parts, bool wholeNumbers) {
  double step = RoundStep(scale.high - scale.low, parts);
  if (wholeNumbers) step = std::max(step, 1.0);
  std::vector<double> ticks;
  const double first = std::ceil(scale.low / step - 1e-9);
  for (double i = first; i * step <= scale.high + 1e-9 * step && ticks.size() < 50; ++i) {
    ticks.push_back(i * step == 0.0 ? 0.0 : i * step);
  }
  return ticks;
}

// In the largest size that the page's style has, of a font as wide as any.
double CharacterWidth(char c) {
  constexpr std::string_view kNarrow = " !'(),-./:;[]fijlrt|1I";
  constexpr std::string_view kWide = "@%MWmw";
  const auto byte = static_cast<unsigned char>(c);
  if (byte >= 0x80) {
    // The bytes of a character beyond ASCII: together 10 for two, 14 for three.
    return byte >= 0xE0 ? 4.0 : 5.0;
  }
  if (kNarrow.find(c) != std::string_view::npos) return 5.5;
  if (kWide.find(c) != std::string_view::npos) return 13.0;
  return c >= 'A' && c <= 'Z' ? 10.3 : 8.3;
}

double TextWidth(std::string_view text) {
  double width = 0.0;
  for (const char c : text) width += CharacterWidth(c);
  return width;
}

bool IsContinuation(char byte) { return (static_cast<unsigned char>(byte) & 0xC0u) == 0x80u; }

constexpr std::string_view kEllipsis = "\u2026";

// Names of groups often differ in their last characters alone, so the middle goes.
std::string WithoutMiddle(std::string_view text, double room) {
  std::vector<std::string_view> characters;
  for (std::size_t i = 0; i < text.size();) {
    std::size_t end = i + 1;
    while (end < text.size() && IsContinuation(text[end])) ++end;
    characters.push_back(text.substr(i, end - i));
    i = end;
  }
  double width = TextWidth(text) + TextWidth(kEllipsis);
  std::size_t head = (characters.size() + 1) / 2;
  std::size_t tail = head;  // where the end begins
  while (width > room && (head > 1 || tail < characters.size())) {
    const bool endIsLonger = characters.size() - tail >= head;
    width -= TextWidth(endIsLonger ? characters[tail++] : characters[--head]);
  }
  std::string shortened;
  for (std::size_t i = 0; i < head; ++i) shortened += characters[i];
  shortened += kEllipsis;
  for (std::size_t i = tail; i < characters.size(); ++i) shortened += characters[i];
  return shortened;
}

}  // namespace

void Drawing::Line(double x1, double y1, double x2, double y2, std::string_view shapeClass) {
  markup += "<line" + Class(shapeClass) + Attribute("x1", x1) + Attribute("y1", y1) +
            Attribute("x2", x2) + Attribute("y2", y2) + "/>\n";
}

void Drawing::Box(double x, double y, double width, double height, std::string_view shapeClass) {
  markup += "<rect" + Class(shapeClass) + Attribute("x", x) + Attribute("y", y) +
            Attribute("width", std::max(width, 0.0)) + Attribute("height", std::max(height, 0.0)) +
            "/>\n";
}

void Drawing::Boxes(const std::vector<Corner>& boxes, double height, std::string_view shapeClass) {
  if (boxes.empty()) return;
  const std::string down = Coordinate(height);
  markup += "<path" + Class(shapeClass) + " d=\"";
  for (const Corner& box : boxes) {
    const std::string across = Coordinate(box.width);
    markup.append("M").append(Coordinate(box.x)).append(" ").append(Coordinate(box.y));
    markup.append("h").append(across).append("v").append(down);
    markup.append("h-").append(across).append("z");
  }
  markup += "\"/>\n";
}

void Drawing::Dot(double x, double y, double radius, std::string_view shapeClass) {
  markup += "<circle" + Class(shapeClass) + Attribute("cx", x) + Attribute("cy", y) +
            Attribute("r", radius) + "/>\n";
}

void Drawing::Diamond(double x, double y, double radius, std::string_view shapeClass) {
  const auto at = [](double px, double py) { return Coordinate(px) + "," + Coordinate(py); };
  markup += "<polygon" + Class(shapeClass) + " points=\"" + at(x - radius, y) + " " +
            at(x, y - radius) + " " + at(x + radius, y) + " " + at(x, y + radius) + "\"/>\n";
}

void Drawing::Dots(const Points& points, std::string_view shapeClass) {
  if (points.empty()) return;
  markup += "<path" + Class(shapeClass) + " d=\"";
  for (const auto& [x, y] : points) {
    markup.append("M").append(Coordinate(x)).append(" ").append(Coordinate(y)).append("h0");
  }
  markup += "\"/>\n";
}

void Drawing::Lines(const std::vector<Points>& lines, std::string_view shapeClass) {
  if (lines.empty()) return;
  markup += "<path" + Class(shapeClass) + " d=\"";
  for (const Points& line : lines) {
    const char* step = "M";
    for (const auto& [x, y] : line) {
      markup.append(step).append(Coordinate(x)).append(" ").append(Coordinate(y));
      step = "L";
    }
  }
  markup += "\"/>\n";
}

void Drawing::Polyline(const Points& points, std::string_view shapeClass) {
  markup += "<polyline" + Class(shapeClass) + " points=\"";
  for (std::size_t i = 0; i < points.size(); ++i) {
    if (i > 0) markup += ' ';
    markup += Coordinate(points[i].first) + "," + Coordinate(points[i].second);
  }
  markup += "\"/>\n";
}

void Drawing::Curve(double x1, double y1, double bendX, double bendY, double x2, double y2,
                    std::string_view shapeClass) {
  markup += "<path" + Class(shapeClass) + " d=\"M" + Coordinate(x1) + " " + Coordinate(y1) + "Q" +
            Coordinate(bendX) + " " + Coordinate(bendY) + " " + Coordinate(x2) + " " +
            Coordinate(y2) + "\"/>\n";
}

void Drawing::Text(double x, double y, std::string_view anchor, std::string_view text,
                   std::string_view shapeClass) {
  markup += "<text" + Class(shapeClass) + Attribute("x", x) + Attribute("y", y) +
            " text-anchor=\"" + std::string(anchor) + "\">" + Escaped(text) + "</text>\n";
}

void Drawing::Name(double x, double y, std::string_view anchor, std::string_view text, double room,
                   std::string_view shapeClass, std::size_t shared) {
  if (TextWidth(text) <= room) return Text(x, y, anchor, text, shapeClass);
  std::string shortened(text);
  if (shared > 0) shortened.replace(0, shared, kEllipsis);
  if (TextWidth(shortened) > room) shortened = WithoutMiddle(shortened, room);
  markup += "<text" + Class(shapeClass) + Attribute("x", x) + Attribute("y", y) +
            " text-anchor=\"" + std::string(anchor) + "\"><title>" + Escaped(text) + "</title>" +
            Escaped(shortened) + "</text>\n";
}

std::size_t SharedBeginning(const std::vector<std::string>& names) {
  if (names.size() < 2) return 0;
  std::string_view shared = names.front();
  for (const std::string_view name : names) {
    const auto [end, other] = std::ranges::mismatch(shared, name);
    shared = shared.substr(0, static_cast<std::size_t>(end - shared.begin()));
  }
  const std::size_t word = shared.find_last_of(" _-./:");
  return word == std::string_view::npos ? 0 : word + 1;
}

Scale ScaleOver(const std::vector<double>& values, double from, double to) {
  double low = INFINITY;
  double high = -INFINITY;
  for (const double value : values) {
    if (!std::isfinite(value)) continue;
    low = std::min(low, value);
    high = std::max(high, value);
  }
  if (!(low <= high)) low = high = 0.0;
  // A range that a double cannot tell from none is none.
  const double least = std::max(std::abs(low), std::abs(high)) * 1e-9;
  const double room = high - low > least ? (high - low) * 0.04 : std::max(0.5, least);
  return {low - room, high + room, from, to};
}

double RoundStep(double range, double parts) {
  const double raw = range / parts;
  if (!(raw > 0.0) || !std::isfinite(raw)) return 1.0;
  const double power = arithmetic::Pow(10.0, std::floor(arithmetic::Log10(raw)));
  for (const double factor : {1.0, 2.0, 5.0}) {
    if (factor * power >= raw * (1.0 - 1e-9)) return factor * power;
  }
  return 10.0 * power;
}

void DrawAxisBelow(Drawing& drawing, const Scale& scale, double y, std::string_view title) {
  drawing.Line(scale.from, y, scale.to, y, "axis");
  for (const double tick : Ticks(scale, 6.0, false)) {
    drawing.Line(scale(tick), y, scale(tick), y + kTickLength, "axis");
    drawing.Text(scale(tick), y + 17.0, "middle", TickText(tick), "tick");
  }
  drawing.Name((scale.from + scale.to) / 2.0, y + 34.0, "middle", title,
               std::min(scale.from + scale.to, 2.0 * kPlotWidth - scale.from - scale.to), "title");
}

void DrawAxisLeft(Drawing& drawing, const Scale& scale, double x, double right, bool wholeNumbers) {
  for (const double tick : Ticks(scale, 5.0, wholeNumbers)) {
    drawing.Line(x, scale(tick), right, scale(tick), "grid");
    drawing.Text(x - 6.0, scale(tick) + 4.0, "end", TickText(tick), "tick");
  }
}

}  // namespace npar_host
