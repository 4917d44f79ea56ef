#include "machine/settings_text.h"

#include <fmt/format.h>

#include <algorithm>
#include <cctype>
#include <optional>
#include <stdexcept>
#include <vector>

#include "runtime/text.h"

namespace ktl {

namespace {

struct Line {
  enum class Kind { Nothing, Section, Setting };
  Kind kind = Kind::Nothing;
  std::string name;  // of the section or the key
  std::string value;
};

bool IsBlank(char c) { return c == ' ' || c == '\t'; }

bool MustBeEscaped(std::string_view text, std::size_t at, std::string_view special) {
  const auto c = static_cast<unsigned char>(text[at]);
  const bool atAnEnd = at == 0 || at + 1 == text.size();
  return c < 0x20 || c == 0x7f || c == '\\' || (c == ' ' && atAnEnd) ||
         special.find(text[at]) != std::string_view::npos;
}

std::string Escape(std::string_view text, std::string_view special) {
  std::string out;
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (MustBeEscaped(text, i, special)) {
      out += fmt::format("\\x{:02X}", static_cast<unsigned char>(text[i]));
    } else {
      out += text[i];
    }
  }
  return out;
}

int HexDigit(char c) {
  if (!std::isxdigit(static_cast<unsigned char>(c))) {
    throw std::invalid_argument("a \"\\\" that is not followed by \"x\" and two hexadecimal digits");
  }
  return std::isdigit(static_cast<unsigned char>(c)) ? c - '0' : (c | 0x20) - 'a' + 10;
}

std::string Unescape(std::string_view text) {
  std::string out;
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (text[i] != '\\') {
      out += text[i];
      continue;
    }
    const std::string_view escape = text.substr(i, 4);
    if (escape.size() < 4 || escape[1] != 'x') {
      throw std::invalid_argument("a \"\\\" that is not followed by \"x\" and two hexadecimal digits");
    }
    out += static_cast<char>(HexDigit(escape[2]) * 16 + HexDigit(escape[3]));
    i += 3;
  }
  return out;
}

std::string_view WithoutBlanks(std::string_view text) {
  while (!text.empty() && IsBlank(text.front())) text.remove_prefix(1);
  while (!text.empty() && (IsBlank(text.back()) || text.back() == '\r')) text.remove_suffix(1);
  return text;
}

Line ParseLine(std::string_view raw) {
  const std::string_view text = WithoutBlanks(raw);
  if (text.empty() || text.front() == ';' || text.front() == '#') {
    return {};
  }
  if (text.front() == '[' && text.back() == ']') {
    return {Line::Kind::Section, Unescape(text.substr(1, text.size() - 2)), {}};
  }
  const std::size_t equals = text.find('=');
  const bool binary =
      std::any_of(text.begin(), text.end(), [](char c) { return c >= 0 && c < ' ' && c != '\t'; });
  if (equals == std::string_view::npos || binary) {
    throw std::invalid_argument("neither a [section] nor key=value");
  }
  return {Line::Kind::Setting, Unescape(WithoutBlanks(text.substr(0, equals))),
          Unescape(WithoutBlanks(text.substr(equals + 1)))};
}

std::vector<std::string> LinesOf(std::string_view text) {
  std::vector<std::string> lines = Split(text, "\n");
  if (!lines.empty() && lines.back().empty()) {
    lines.pop_back();
  }
  return lines;
}

// Where a new key of the section goes: behind its last line that says something.
struct Place {
  std::optional<std::size_t> existing;
  std::optional<std::size_t> behind;
};

Place FindPlace(const std::vector<std::string>& lines, std::string_view section, std::string_view key) {
  Place place;
  bool inSection = section.empty();
  for (std::size_t i = 0; i < lines.size(); ++i) {
    const Line line = ParseLine(lines[i]);
    if (line.kind == Line::Kind::Section) {
      inSection = EqualsNoCase(line.name, section);
    }
    if (inSection && line.kind != Line::Kind::Nothing) {
      place.behind = i;
    }
    // Of a key that stands twice the last one counts.
    if (inSection && line.kind == Line::Kind::Setting && EqualsNoCase(line.name, key)) {
      place.existing = i;
    }
  }
  return place;
}

}  // namespace

std::string SettingName(std::string_view section, std::string_view key) {
  return UpperCase(section) + '\n' + UpperCase(key);
}

std::map<std::string, std::string, std::less<>> ParseSettings(std::string_view text) {
  std::map<std::string, std::string, std::less<>> values;
  std::string section;
  std::size_t number = 0;
  for (const std::string& raw : LinesOf(text)) {
    ++number;
    try {
      Line line = ParseLine(raw);
      if (line.kind == Line::Kind::Section) {
        section = std::move(line.name);
      } else if (line.kind == Line::Kind::Setting) {
        values.insert_or_assign(SettingName(section, line.name), std::move(line.value));
      }
    } catch (const std::invalid_argument& why) {
      throw std::invalid_argument(fmt::format("line {}: {}", number, why.what()));
    }
  }
  return values;
}

std::string WithSetting(std::string_view text, std::string_view section, std::string_view key,
                        std::string_view value) {
  ParseSettings(text);  // a text that is no settings file is refused, not added to
  std::vector<std::string> lines = LinesOf(text);
  const std::string setting = Escape(key, "=[];#") + '=' + Escape(value, "");
  const Place place = FindPlace(lines, section, key);
  if (place.existing) {
    lines[*place.existing] = setting;
  } else if (place.behind) {
    lines.insert(lines.begin() + static_cast<std::ptrdiff_t>(*place.behind) + 1, setting);
  } else {
    lines.push_back('[' + Escape(section, "[]") + ']');
    lines.push_back(setting);
  }
  return fmt::format("{}\n", fmt::join(lines, "\n"));
}

}  // namespace ktl
