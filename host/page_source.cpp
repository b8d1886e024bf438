// One pass over each file: text, scripts and includes in the order in which they stand.
#include "host/page_source.h"

#include <algorithm>
#include <fstream>
#include <optional>
#include <sstream>
#include <utility>

namespace pelm::host {
namespace {

constexpr std::size_t kDeepestInclude = 32;
/// A diamond of includes doubles at every level; this stops it.
constexpr std::size_t kLargestPage = std::size_t{4} << 20U;
constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";

/// Line ends as editors and the script engine count them: LF, CR LF or CR alone.
int count_lines(std::string_view s) {
  int lines = 0;
  for (std::size_t i = 0; i < s.size(); ++i) {
    if (s[i] == '\n' || (s[i] == '\r' && (i + 1 == s.size() || s[i + 1] != '\n'))) ++lines;
  }
  return lines;
}

/// The script engine also ends a line at U+2028 and U+2029, which no editor shows as one.
int count_invisible_lines(std::string_view s) {
  int lines = 0;
  for (std::size_t at = s.find("\xE2\x80"); at != std::string_view::npos;
       at = s.find("\xE2\x80", at + 2)) {
    if (at + 2 < s.size() && (s[at + 2] == '\xA8' || s[at + 2] == '\xA9')) ++lines;
  }
  return lines;
}

char lower(char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c + ('a' - 'A')) : c; }

bool starts_with_word(std::string_view s, std::string_view word) {
  return s.size() >= word.size() && std::equal(word.begin(), word.end(), s.begin(),
                                               [](char a, char b) { return a == lower(b); });
}

std::string_view skip_blanks(std::string_view s) {
  const std::size_t first = s.find_first_not_of(" \t\r\n");
  return first == std::string_view::npos ? std::string_view() : s.substr(first);
}

enum class Mark { Script, Include, ServerScript };

struct Found {
  Mark mark;
  std::size_t at;
};

bool is_server_script(std::string_view tag) {
  std::string attributes;
  for (const char c : tag.substr(0, tag.find('>'))) {
    if (c != ' ' && c != '\t' && c != '"' && c != '\'' && c != '\r' && c != '\n')
      attributes += lower(c);
  }
  return attributes.find("runat=server") != std::string::npos;
}

/// The first "<%", "<!-- #include" or "<script … runat=server" at or after `from`.
std::optional<Found> find_mark(std::string_view text, std::size_t from) {
  for (std::size_t at = text.find('<', from); at != std::string_view::npos;
       at = text.find('<', at + 1)) {
    const std::string_view rest = text.substr(at);
    if (rest.starts_with("<%")) return Found{Mark::Script, at};
    if (rest.starts_with("<!--") && starts_with_word(skip_blanks(rest.substr(4)), "#include"))
      return Found{Mark::Include, at};
    if (starts_with_word(rest, "<script") && is_server_script(rest))
      return Found{Mark::ServerScript, at};
  }
  return std::nullopt;
}

struct IncludeMark {
  bool from_root;
  std::string_view name;
};

/// Reads `file="name"` or `virtual="name"`; nothing when it is neither.
std::optional<IncludeMark> read_include(std::string_view inside) {
  std::string_view s = skip_blanks(skip_blanks(inside).substr(std::string_view("#include").size()));
  const bool from_root = starts_with_word(s, "virtual");
  if (!from_root && !starts_with_word(s, "file")) return std::nullopt;
  s = skip_blanks(s.substr(from_root ? 7 : 4));
  if (!s.starts_with('=')) return std::nullopt;
  s = skip_blanks(s.substr(1));
  if (s.empty() || (s[0] != '"' && s[0] != '\'')) return std::nullopt;
  const std::size_t end = s.find(s[0], 1);
  if (end == std::string_view::npos || end == 1) return std::nullopt;
  if (!skip_blanks(s.substr(end + 1)).empty()) return std::nullopt;
  return IncludeMark{from_root, s.substr(1, end - 1)};
}

class Reader {
 public:
  explicit Reader(const PageFiles& files) : files_(files) {}

  PageSource read(const std::string& page_path) {
    include(page_path, std::nullopt);
    return std::move(page_);
  }

 private:
  /// A file being read: its place in `page_.files` and the line that stands next.
  struct Open {
    std::string path;
    std::size_t index;
    int line = 1;
  };

  void include(const std::string& path, const std::optional<SourcePlace>& from) {
    const auto fail = [&](const std::string& why) {
      throw PageSyntaxError(from.value_or(SourcePlace{path, 1}), why);
    };
    const auto same_path = [&](const Open* open) { return open->path == path; };
    if (std::any_of(open_.begin(), open_.end(), same_path)) {
      fail("O arquivo \"" + path + "\" inclui a si mesmo: " + chain() + " → " + path + ".");
    }
    if (open_.size() >= kDeepestInclude) {
      fail("Mais de " + std::to_string(kDeepestInclude) + " inclusões aninhadas: " + chain() + ".");
    }
    std::string text;
    try {
      text = files_.read(path);
    } catch (const PageSyntaxError& unreadable) {
      fail(unreadable.what());
    }
    size_ += text.size();
    if (size_ > kLargestPage) {
      fail("A página e suas inclusões passam de " + std::to_string(kLargestPage) + " bytes.");
    }
    Open file{path, file_index(path)};
    open_.push_back(&file);
    std::string_view body = text;
    if (body.starts_with(kByteOrderMark)) body.remove_prefix(kByteOrderMark.size());
    read_text(file, body);
    open_.pop_back();
  }

  void read_text(Open& file, std::string_view text) {
    std::size_t at = 0;
    while (const auto mark = find_mark(text, at)) {
      add_html(file, text.substr(at, mark->at - at));
      const SourcePlace place{file.path, file.line};
      if (mark->mark == Mark::ServerScript) {
        throw PageSyntaxError(
            place, "Blocos <script runat=\"server\"> não existem aqui: use <% … %> em seu lugar.");
      }
      const bool script = mark->mark == Mark::Script;
      const std::string_view closing = script ? "%>" : "-->";
      const std::size_t begin = mark->at + (script ? 2 : 4);
      const std::size_t end = text.find(closing, begin);
      if (end == std::string_view::npos) {
        throw PageSyntaxError(place, script ? "Falta %> para o <% desta linha."
                                            : "Falta --> para o <!-- #include desta linha.");
      }
      const std::string_view inside = text.substr(begin, end - begin);
      if (script) {
        add_script(file, inside);
      } else {
        add_include(file, inside, place);
      }
      at = end + closing.size();
    }
    add_html(file, text.substr(at));
  }

  void add_include(Open& file, std::string_view inside, const SourcePlace& place) {
    const auto mark = read_include(inside);
    if (!mark) {
      throw PageSyntaxError(place,
                            "Inclusão malfeita: esperado <!--#include file=\"arquivo\"--> ou "
                            "<!--#include virtual=\"/arquivo\"-->.");
    }
    std::string path;
    try {
      path = files_.resolve(page::folder_of(file.path), mark->name, mark->from_root);
    } catch (const PageSyntaxError& outside) {
      throw PageSyntaxError(place, outside.what());
    }
    include(path, place);
    file.line += count_lines(inside);
  }

  void add_html(Open& file, std::string_view html) {
    if (html.empty()) return;
    add_line(file, std::string(kWriteHtml) + "(" + std::to_string(page_.html.size()) + ");", 0);
    page_.html.emplace_back(html);
    file.line += count_lines(html);
  }

  void add_script(Open& file, std::string_view inside) {
    const int lines = count_lines(inside);
    if (inside.starts_with('@')) {
      // A directive: only the language was ever set there, and pages have one language.
    } else if (inside.starts_with('=')) {
      // The line end before ")" lets an expression close with a comment.
      add_line(file, std::string(kWriteValue) + "(" + std::string(inside.substr(1)) + "\n);",
               lines);
    } else {
      add_line(file, inside, lines);
    }
    file.line += lines;
  }

  /// `lines`: line ends within it that the file has too.
  /// Every piece begins a line of its own, so a script may leave out its last semicolon.
  void add_line(const Open& file, std::string_view code, int lines) {
    page_.segments.push_back({script_line_, file.index, file.line, file.line + lines});
    page_.script.append(code).append("\n");
    script_line_ += count_lines(code) + count_invisible_lines(code) + 1;
  }

  std::size_t file_index(const std::string& path) {
    const auto found = std::find(page_.files.begin(), page_.files.end(), path);
    const auto index = static_cast<std::size_t>(found - page_.files.begin());
    if (found == page_.files.end()) page_.files.push_back(path);
    return index;
  }

  std::string chain() const {
    std::string names;
    for (const Open* open : open_) names.append(names.empty() ? "" : " → ").append(open->path);
    return names;
  }

  const PageFiles& files_;
  PageSource page_;
  std::vector<const Open*> open_;
  std::size_t size_ = 0;
  int script_line_ = 1;
};

}  // namespace

SourcePlace PageSource::place_of(int script_line) const {
  const auto after =
      std::upper_bound(segments.begin(), segments.end(), script_line,
                       [](int line, const Segment& segment) { return line < segment.script_line; });
  if (after == segments.begin()) return {files.empty() ? std::string() : files.front(), 1};
  const Segment& segment = *std::prev(after);
  const int line = segment.file_line + (script_line - segment.script_line);
  return {files[segment.file], std::min(line, segment.last_file_line)};
}

PageSource read_page(const PageFiles& files, const std::string& page_path) {
  return Reader(files).read(page_path);
}

PageFiles files_below(const page::SiteRoot& root) {
  const auto refuse = [](std::string_view path, std::string_view why) {
    throw PageSyntaxError({}, "O arquivo \"" + std::string(path) + "\" " + std::string(why));
  };
  PageFiles files;
  files.read = [root, refuse](const std::string& path) {
    const auto file = page::resolve_in_site(root, "/", path);
    if (!file) refuse(path, "fica fora da raiz do site.");
    std::error_code ignored;
    std::ifstream stream(*file, std::ios::binary);
    if (!std::filesystem::is_regular_file(*file, ignored) || !stream) {
      refuse(path, "não existe ou não pode ser lido.");
    }
    std::ostringstream text;
    text << stream.rdbuf();
    return std::move(text).str();
  };
  files.resolve = [root, refuse](std::string_view from, std::string_view name, bool from_root) {
    const auto file = page::resolve_in_site(root, from_root ? "/" : from, name);
    if (!file) refuse(name.substr(0, name.find('\0')), "fica fora da raiz do site.");
    // As the file system has it, so that one file has one name however it is reached.
    std::error_code ignored;
    return "/" + std::filesystem::weakly_canonical(*file, ignored)
                     .lexically_relative(root.path())
                     .generic_string();
  };
  return files;
}

}  // namespace pelm::host
