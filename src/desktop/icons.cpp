#include "desktop/icons.h"

#include <QApplication>
#include <QPainter>
#include <map>
#include <vector>

namespace ktl {
namespace {

using Line = std::vector<QPointF>;

// On a sheet of 16 by 16.
const std::map<QString, std::vector<Line>> kDrawings{
    {"new", {{{8, 3}, {8, 13}}, {{3, 8}, {13, 8}}}},
    {"save", {{{3, 8.5}, {6.5, 12}, {13, 4.5}}}},
    {"delete",
     {{{3, 4.5}, {13, 4.5}},
      {{6, 4.5}, {6, 2.5}, {10, 2.5}, {10, 4.5}},
      {{4.5, 4.5}, {5.2, 13.5}, {10.8, 13.5}, {11.5, 4.5}}}},
    {"close", {{{4, 4}, {12, 12}}, {{12, 4}, {4, 12}}}},
    {"table",
     {{{2.5, 3.5}, {13.5, 3.5}, {13.5, 12.5}, {2.5, 12.5}, {2.5, 3.5}},
      {{2.5, 6.5}, {13.5, 6.5}},
      {{6.5, 3.5}, {6.5, 12.5}}}},
    {"month",
     {{{2.5, 4}, {13.5, 4}, {13.5, 13.5}, {2.5, 13.5}, {2.5, 4}},
      {{2.5, 7}, {13.5, 7}},
      {{5.5, 2.5}, {5.5, 5}},
      {{10.5, 2.5}, {10.5, 5}}}},
    {"people",
     {{{4, 4.5}, {5.5, 3}, {7, 4.5}, {5.5, 6.5}, {4, 4.5}},
      {{2, 12.5}, {2.6, 9}, {5.5, 8}, {8.4, 9}, {9, 12.5}, {2, 12.5}},
      {{10.5, 4}, {12, 5.2}, {10.8, 7}},
      {{11, 8.6}, {13.4, 9.6}, {14, 12.5}, {11.5, 12.5}}}},
    {"list",
     {{{2.5, 4}, {3.5, 4}},
      {{6, 4}, {13.5, 4}},
      {{2.5, 8}, {3.5, 8}},
      {{6, 8}, {13.5, 8}},
      {{2.5, 12}, {3.5, 12}},
      {{6, 12}, {13.5, 12}}}},
    {"page",
     {{{4, 2.5}, {9.5, 2.5}, {12.5, 5.5}, {12.5, 13.5}, {4, 13.5}, {4, 2.5}},
      {{6, 8}, {10.5, 8}},
      {{6, 10.7}, {10.5, 10.7}}}},
    {"receipt",
     {{{3.5, 2.5},
       {12.5, 2.5},
       {12.5, 13.5},
       {11, 12.3},
       {9.5, 13.5},
       {8, 12.3},
       {6.5, 13.5},
       {5, 12.3},
       {3.5, 13.5},
       {3.5, 2.5}},
      {{6, 5.5}, {10, 5.5}},
      {{6, 8.5}, {10, 8.5}}}},
    {"house",
     {{{2.5, 8}, {8, 3}, {13.5, 8}},
      {{4, 7}, {4, 13.2}, {12, 13.2}, {12, 7}},
      {{7, 13}, {7, 9.5}, {9, 9.5}, {9, 13}}}},
    {"bank",
     {{{2.5, 6.3}, {8, 2.8}, {13.5, 6.3}, {2.5, 6.3}},
      {{4.3, 8}, {4.3, 11.2}},
      {{8, 8}, {8, 11.2}},
      {{11.7, 8}, {11.7, 11.2}},
      {{2.5, 13.3}, {13.5, 13.3}}}},
    {"formula", {{{12.5, 4.5}, {12.5, 2.8}, {3.5, 2.8}, {8.5, 8}, {3.5, 13.2}, {12.5, 13.2}, {12.5, 11.5}}}},
    {"more", {{{3, 4.5}, {13, 4.5}}, {{3, 8}, {13, 8}}, {{3, 11.5}, {13, 11.5}}}}};

const std::vector<Line>* LinesOf(const QString& name) {
  const auto found = kDrawings.find(name);
  return found == kDrawings.end() ? nullptr : &found->second;
}

QPixmap Draw(const std::vector<Line>& lines, const QColor& colour, int scale) {
  QPixmap picture(16 * scale, 16 * scale);
  picture.fill(Qt::transparent);
  QPainter painter(&picture);
  painter.setRenderHint(QPainter::Antialiasing);
  painter.scale(scale, scale);
  painter.setPen(QPen(colour, 1.5, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
  for (const Line& line : lines) painter.drawPolyline(line.data(), int(line.size()));
  painter.end();
  picture.setDevicePixelRatio(scale);
  return picture;
}

}  // namespace

QIcon LineIcon(const QString& name, const QColor& colour) {
  const std::vector<Line>* lines = LinesOf(name);
  if (!lines) return {};
  QIcon icon;
  for (const int scale : {1, 2}) {
    icon.addPixmap(Draw(*lines, colour, scale));
    icon.addPixmap(Draw(*lines, QColor("#b4bdc8"), scale), QIcon::Disabled);
  }
  return icon;
}

QPixmap BoxPicture(Icon icon) {
  struct Sign {
    const char* text;
    const char* colour;
  };
  static const std::map<Icon, Sign> kSigns{{Icon::Information, {"i", "#2f6fb3"}},
                                           {Icon::Question, {"?", "#2f6fb3"}},
                                           {Icon::Exclamation, {"!", "#d9822b"}},
                                           {Icon::Critical, {"\u00d7", "#c23030"}}};
  const auto sign = kSigns.find(icon);
  if (sign == kSigns.end()) return {};
  QPixmap picture(80, 80);
  picture.fill(Qt::transparent);
  QPainter painter(&picture);
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setPen(Qt::NoPen);
  painter.setBrush(QColor(sign->second.colour));
  painter.drawEllipse(4, 4, 72, 72);
  QFont font = QApplication::font();
  font.setPixelSize(46);
  font.setBold(true);
  painter.setFont(font);
  painter.setPen(Qt::white);
  painter.drawText(QRect(0, 0, 80, 80), Qt::AlignCenter, QString::fromUtf8(sign->second.text));
  painter.end();
  picture.setDevicePixelRatio(2);
  return picture;
}

}  // namespace ktl
