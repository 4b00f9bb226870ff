// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/support/irp.h"

#include <algorithm>
#include <bit>
#include <cctype>
#include <fstream>
#include <numeric>
#include <variant>

namespace irp {
namespace {

constexpr int kDefaultCarrierHz = 38000;
constexpr int64_t kUsPerSecond = 1'000'000;
constexpr int kMostBits = 62;  // of one field; leaves room for sign and sums

Rational reduced(int64_t numerator, int64_t denominator) {
  if (denominator < 0) {
    numerator = -numerator;
    denominator = -denominator;
  }
  const int64_t common = std::max<int64_t>(1, std::gcd(numerator, denominator));
  return {numerator / common, denominator / common};
}

Rational operator+(Rational a, Rational b) {
  return reduced(a.numerator * b.denominator + b.numerator * a.denominator,
                 a.denominator * b.denominator);
}
Rational operator-(Rational a) {
  return {-a.numerator, a.denominator};
}
Rational operator-(Rational a, Rational b) {
  return a + -b;
}
Rational operator*(Rational a, Rational b) {
  return reduced(a.numerator * b.numerator, a.denominator * b.denominator);
}
Rational absolute(Rational a) {
  return a.numerator < 0 ? -a : a;
}

int rounded(Rational length) {
  const Rational a = absolute(length);
  return static_cast<int>((2 * a.numerator + a.denominator) / (2 * a.denominator));
}

/// "2.6", "0x1F", "0b11", "12"
Rational number(const std::string& text) {
  if (text.starts_with("0b")) return {std::stoll(text.substr(2), nullptr, 2), 1};
  const size_t point = text.find('.');
  if (point == std::string::npos) return {std::stoll(text, nullptr, 0), 1};
  int64_t scale = 1;
  for (size_t i = point + 1; i < text.size(); ++i) scale *= 10;
  return reduced(std::stoll(text.substr(0, point) + text.substr(point + 1)), scale);
}

uint64_t magnitude(int64_t value) {
  return value < 0 ? uint64_t{0} - static_cast<uint64_t>(value) : static_cast<uint64_t>(value);
}

int64_t floor_division(int64_t a, int64_t b) {
  if (b == 0) throw Error("division by zero");
  return a / b - ((a % b != 0 && (a < 0) != (b < 0)) ? 1 : 0);
}

int64_t power(int64_t base, int64_t exponent) {
  int64_t result = 1;
  for (; exponent > 0; --exponent) result *= base;
  return result;
}

int64_t mask(int64_t width) {
  if (width < 0 || width > kMostBits) throw Error("a field of " + std::to_string(width) + " bits");
  return (int64_t{1} << width) - 1;
}

int64_t reversed(int64_t value, int64_t width) {
  int64_t result = 0;
  for (int64_t i = 0; i < width; ++i) result = result << 1 | (value >> i & 1);
  return result;
}

struct Operator {
  std::string_view symbol;
  int level;  // the loosest is 0
  int64_t (*apply)(int64_t, int64_t);
};

constexpr int kAdditive = 6;  // the loosest level between the < | > of a bitspec
constexpr int kTightest = 9;
constexpr Operator kOperators[] = {
    {"|", 0, [](int64_t a, int64_t b) { return a | b; }},
    {"^", 1, [](int64_t a, int64_t b) { return a ^ b; }},
    {"&", 2, [](int64_t a, int64_t b) { return a & b; }},
    {"==", 3, [](int64_t a, int64_t b) { return int64_t{a == b}; }},
    {"!=", 3, [](int64_t a, int64_t b) { return int64_t{a != b}; }},
    {"<", 4, [](int64_t a, int64_t b) { return int64_t{a < b}; }},
    {">", 4, [](int64_t a, int64_t b) { return int64_t{a > b}; }},
    {"<=", 4, [](int64_t a, int64_t b) { return int64_t{a <= b}; }},
    {">=", 4, [](int64_t a, int64_t b) { return int64_t{a >= b}; }},
    {"<<", 5, [](int64_t a, int64_t b) { return a << b; }},
    {">>", 5, [](int64_t a, int64_t b) { return a >> b; }},
    {"+", kAdditive, [](int64_t a, int64_t b) { return a + b; }},
    {"-", kAdditive, [](int64_t a, int64_t b) { return a - b; }},
    {"*", 7, [](int64_t a, int64_t b) { return a * b; }},
    {"/", 7, floor_division},
    {"%", 7, [](int64_t a, int64_t b) { return a - b * floor_division(a, b); }},
    {"**", 8, power},
};

std::vector<std::string> tokens(std::string_view text) {
  static constexpr std::string_view kPairs[] = {"..", "**", "<<", ">>", "<=", ">=", "==", "!="};
  const auto letter = [](char c) {
    return std::isalnum(static_cast<unsigned char>(c)) || c == '_';
  };
  const auto digit = [](char c) { return std::isdigit(static_cast<unsigned char>(c)) != 0; };
  std::vector<std::string> found;
  for (size_t at = 0; at < text.size();) {
    size_t end = at + 1;
    if (std::isspace(static_cast<unsigned char>(text[at]))) {
      at = end;
      continue;
    }
    if (text.substr(at, 2) == "0x" || text.substr(at, 2) == "0b") {
      while (end < text.size() && letter(text[end])) ++end;
    } else if (digit(text[at])) {
      while (end < text.size() && digit(text[end])) ++end;
      if (end + 1 < text.size() && text[end] == '.' && digit(text[end + 1])) {
        ++end;
        while (end < text.size() && digit(text[end])) ++end;
      }
    } else if (letter(text[at])) {
      while (end < text.size() && letter(text[end])) ++end;
    } else if (std::ranges::count(kPairs, text.substr(at, 2)) != 0) {
      ++end;
    }
    found.emplace_back(text.substr(at, end - at));
    at = end;
  }
  found.emplace_back();  // the end
  return found;
}

/// UINT8_MAX and its like, the only names that need no definition.
int64_t constant(std::string_view name) {
  constexpr std::string_view kHead = "UINT", kTail = "_MAX";
  if (name.starts_with(kHead) && name.ends_with(kTail)) {
    return mask(std::stoll(std::string(name.substr(kHead.size()))));
  }
  throw Error(std::string(name) + " is not set");
}

struct Duration {
  int sign;  // 1 mark, -1 space, 0 extent
  Length length;
  char suffix;  // '\0': the protocol's unit
};
struct Bits {
  Expression value, width;
};
struct Assignment {
  std::string name;
  Expression value;
};

}  // namespace

struct Protocol::Stream {
  struct Choice;
  using Item = std::variant<Duration, Bits, Assignment, std::shared_ptr<const Choice>,
                            std::shared_ptr<const Stream>>;
  using Items = std::vector<Item>;
  /// [a][b]: a in the first frame, b in later ones.
  struct Choice {
    std::vector<Items> choices;
  };

  std::vector<Items> bitspec;  // empty: the one around it holds
  Items body;
  int64_t least = 1;
  bool endless = false;
};

class Parser {
 public:
  explicit Parser(std::string_view text) : tokens_(tokens(text)) {}

  void parse(Protocol& protocol) {
    general(protocol);
    protocol.stream_ = std::make_unique<Stream>(stream());
    while (!token().empty()) {
      if (expect({"{", "["}) == "{") {
        definitions(protocol);
      } else {
        parameters(protocol);
      }
    }
  }

  Expression whole_expression() {
    Expression value = expression();
    expect({""});
    return value;
  }

 private:
  using Stream = Protocol::Stream;
  using Choice = Stream::Choice;
  using Items = Stream::Items;
  using Words = std::initializer_list<std::string_view>;

  /// A value and, for a field with a width, that width.
  struct Field {
    Length value;
    Expression width;
  };

  const std::string& token(size_t ahead = 0) const {
    return tokens_[std::min(at_ + ahead, tokens_.size() - 1)];
  }
  const std::string& next() {
    const std::string& now = token();
    ++at_;
    return now;
  }
  bool accept(std::string_view wanted) {
    if (token() != wanted) return false;
    ++at_;
    return true;
  }
  const std::string& expect(Words wanted) {
    if (std::ranges::count(wanted, token()) == 0) throw Error("unexpected '" + token() + "'");
    return next();
  }
  bool number_next() const {
    return !token().empty() && std::isdigit(static_cast<unsigned char>(token()[0]));
  }

  // Expressions.
  static Expression integer(Length value) {
    return [value = std::move(value)](const Lookup& get) {
      const Rational exact = value(get);
      return exact.numerator / exact.denominator;
    };
  }
  static Length exact(Expression value) {
    return [value = std::move(value)](const Lookup& get) { return Rational{value(get), 1}; };
  }

  const Operator* operator_at(int level) const {
    const auto* found = std::ranges::find_if(
        kOperators, [&](const Operator& o) { return o.level == level && o.symbol == token(); });
    return found == std::end(kOperators) ? nullptr : found;
  }

  Expression expression(int level = 0) {
    if (level == kTightest) return unary();
    Expression left = expression(level + 1);
    while (const Operator* found = operator_at(level)) {
      next();
      left = [apply = found->apply, left, right = expression(level + 1)](const Lookup& get) {
        return apply(left(get), right(get));
      };
    }
    return left;
  }

  Expression unary() {
    if (accept("-")) return [value = unary()](const Lookup& get) { return -value(get); };
    if (accept("!")) return [value = unary()](const Lookup& get) { return int64_t{!value(get)}; };
    if (accept("#")) {
      return [value = unary()](const Lookup& get) {
        return int64_t{std::popcount(magnitude(value(get)))};
      };
    }
    return integer(field().value);
  }

  /// [~] primary [:[-]width[:chop] | ::chop]
  Field field() {
    if (accept("~")) return complemented(field());
    Length value = primary();
    if (!accept(":")) return {std::move(value), nullptr};
    if (accept(":")) {
      return {exact([value = integer(value), chop = integer(primary())](const Lookup& get) {
                return value(get) >> chop(get);
              }),
              nullptr};
    }
    const bool reverse = accept("-");
    const Expression width = integer(primary());
    const Expression chop =
        accept(":") ? integer(primary()) : [](const Lookup&) { return int64_t{0}; };
    return {exact([value = integer(value), width, chop, reverse](const Lookup& get) {
              const int64_t size = width(get), bits = value(get) >> chop(get) & mask(size);
              return reverse ? reversed(bits, size) : bits;
            }),
            width};
  }

  static Field complemented(const Field& field) {
    const Expression value = integer(field.value), width = field.width;
    if (!width) return {exact([value](const Lookup& get) { return ~value(get); }), nullptr};
    return {exact([value, width](const Lookup& get) { return ~value(get) & mask(width(get)); }),
            width};
  }

  Length primary() {
    const bool is_number = number_next();
    const std::string name = next();
    if (name == "(") {
      Expression value = expression();
      expect({")"});
      return exact(std::move(value));
    }
    if (is_number) return [value = number(name)](const Lookup&) { return value; };
    if (name.empty() || !std::isalpha(static_cast<unsigned char>(name[0]))) {
      throw Error("unexpected '" + name + "'");
    }
    return [name](const Lookup& get) { return Rational{get(name), 1}; };
  }

  // Streams.
  Stream stream() {
    Stream found;
    if (accept("<")) {
      do found.bitspec.push_back(items({"|", ">"}, kAdditive));
      while (tokens_[at_ - 1] == "|");
    }
    expect({"("});
    found.body = items({")"});
    if (number_next()) {
      found.least = std::stoll(next());
      found.endless = accept("+");
    } else if (token() == "*" || token() == "+") {
      found.least = next() == "+" ? 1 : 0;
      found.endless = true;
    }
    return found;
  }

  Items items(Words closers, int level = 0) {
    Items found;
    while (std::ranges::count(closers, token()) == 0) {
      found.push_back(item(level));
      if (!accept(",")) break;
    }
    expect(closers);
    return found;
  }

  Stream::Item item(int level) {
    if (token() == "<" || (token() == "(" && !bracketed_field())) {
      return std::make_shared<const Stream>(stream());
    }
    if (token() == "[") return std::make_shared<const Choice>(choice());
    if (token(1) == "=") {
      std::string name = next();
      next();
      return Assignment{std::move(name), expression(level)};
    }
    if (token() == "-" || token() == "^") {
      const int sign = next() == "-" ? -1 : 0;
      Length length = primary();
      return Duration{sign, std::move(length), suffix()};
    }
    Field found = field();
    if (found.width) return Bits{integer(found.value), found.width};
    return Duration{1, std::move(found.value), suffix()};
  }

  Choice choice() {
    Choice found;
    while (accept("[")) found.choices.push_back(items({"]"}));
    return found;
  }

  char suffix() {
    if (token() != "u" && token() != "m" && token() != "p") return '\0';
    return next()[0];
  }

  /// Whether the bracket here closes before a colon: (expression):8 rather than a stream.
  bool bracketed_field() const {
    int depth = 0;
    for (size_t at = at_; at + 1 < tokens_.size(); ++at) {
      depth += tokens_[at] == "(" ? 1 : tokens_[at] == ")" ? -1 : 0;
      if (depth == 0) return tokens_[at + 1] == ":";
    }
    throw Error("unbalanced brackets");
  }

  // The sections around the stream.
  void general(Protocol& protocol) {
    int carrier = kDefaultCarrierHz;
    Rational unit{1, 1};
    char unit_suffix = 'u';
    expect({"{"});
    while (!accept("}")) {
      if (token() == "msb" || token() == "lsb") {
        protocol.most_significant_first_ = next() == "msb";
      } else {
        const Rational value = number(next());
        if (accept("k")) {
          carrier = rounded(value * Rational{1000, 1});
        } else if (!accept("%")) {  // the duty cycle changes no duration
          unit = value;
          unit_suffix = accept("p") ? 'p' : 'u';
          accept("u");
        }
      }
      accept(",");
    }
    protocol.carrier_ = carrier;
    auto& scale = protocol.scale_;
    scale['u'] = {1, 1};
    scale['m'] = {1000, 1};
    scale['p'] = carrier == 0 ? Rational{1, 1} : reduced(kUsPerSecond, carrier);
    scale['\0'] = unit * scale[unit_suffix];
  }

  void definitions(Protocol& protocol) {
    while (!accept("}")) {
      const std::string name = next();
      expect({"="});
      protocol.definitions_[name] = expression();
      accept(",");
    }
  }

  void parameters(Protocol& protocol) {
    while (!accept("]")) {
      Parameter found;
      found.name = next();
      accept("@");
      expect({":"});
      found.low = expression()(constant);
      expect({".."});
      found.high = expression()(constant);
      if (accept("=")) found.preset = expression();
      protocol.parameters_.push_back(std::move(found));
      accept(",");
    }
  }

  std::vector<std::string> tokens_;
  size_t at_ = 0;
};

namespace {

using Signed = std::vector<Rational>;  // marks positive, spaces negative

/// Neighbours of one sign merge; a leading space is silence and is dropped.
void append(Signed& durations, Rational length) {
  if (length.numerator == 0) return;
  const bool mark = length.numerator > 0;
  if (!durations.empty() && (durations.back().numerator > 0) == mark) {
    durations.back() = durations.back() + length;
  } else if (mark || !durations.empty()) {
    durations.push_back(length);
  }
}

std::vector<int> rounded(const Signed& durations) {
  std::vector<int> result;
  for (const Rational& length : durations) result.push_back(rounded(length));
  return result;
}

}  // namespace

/// One walk through a stream, collecting the exact durations of every segment.
class Player {
 public:
  Player(const Protocol& protocol, Parameters state, int repeats)
      : protocol_(protocol),
        state_(std::move(state)),
        get_(protocol.lookup(state_)),
        repeats_(repeats),
        segments_{{Segment::kIntro, {}}} {
    repeat(*protocol.stream_, nullptr);
  }

  const std::vector<std::pair<Segment, Signed>>& segments() const { return segments_; }

 private:
  using Stream = Protocol::Stream;
  using Items = Stream::Items;

  /// The bitspec in force. Bits gather until they select an alternative, which the scope outside
  /// plays.
  struct Scope {
    const std::vector<Items>* alternatives;
    Scope* outer;
    size_t size;  // bits that select one alternative
    std::vector<int> queue = {};
  };

  /// An empty choice ends the pass.
  void play(const Items& items, Scope* scope) {
    for (const auto& item : items) {
      if (const auto* bits = std::get_if<Bits>(&item)) {
        send(scope, bits->value(get_), bits->width(get_));
        continue;
      }
      if (scope != nullptr && !scope->queue.empty()) throw Error("bits left over");
      if (const auto* duration = std::get_if<Duration>(&item)) {
        emit(*duration);
      } else if (const auto* assignment = std::get_if<Assignment>(&item)) {
        state_[assignment->name] = assignment->value(get_);
      } else if (const auto* stream = std::get_if<std::shared_ptr<const Stream>>(&item)) {
        repeat(**stream, scope);
      } else {
        const auto& choices = std::get<std::shared_ptr<const Stream::Choice>>(item)->choices;
        if (phase_ >= choices.size() || choices[phase_].empty()) return;
        play(choices[phase_], scope);
      }
    }
  }

  void send(Scope* scope, int64_t value, int64_t width) {
    if (scope == nullptr) throw Error("bits without a bitspec");
    const bool msb = protocol_.most_significant_first_;
    for (int64_t i = 0; i < width; ++i) {
      scope->queue.push_back(static_cast<int>(value >> (msb ? width - 1 - i : i) & 1));
    }
    while (!scope->queue.empty() && scope->queue.size() >= scope->size) {
      size_t symbol = 0;
      for (size_t i = 0; i < scope->size; ++i) {
        const auto bit = static_cast<size_t>(scope->queue[i]);
        symbol |= bit << (msb ? scope->size - 1 - i : i);
      }
      scope->queue.erase(scope->queue.begin(),
                         scope->queue.begin() + static_cast<std::ptrdiff_t>(scope->size));
      play(scope->alternatives->at(symbol), scope->outer);
    }
  }

  void emit(const Duration& duration) {
    const Rational length = duration.length(get_) * protocol_.scale_.at(duration.suffix);
    if (duration.sign != 0) {
      add(duration.sign > 0 ? length : -length);
      return;
    }
    const Rational gap = start_ + length - now_;
    if (gap.numerator < 0) throw Error("a frame longer than its extent");
    add(-gap);
    start_ = now_;  // a following extent counts from here
  }

  void add(Rational length) {
    now_ = now_ + absolute(length);
    append(segments_.back().second, length);
  }

  void repeat(const Stream& stream, Scope* outer) {
    Scope own{&stream.bitspec, outer, 0};
    if (stream.bitspec.size() == 1) throw Error("a bitspec of one symbol");
    if (!stream.bitspec.empty()) own.size = std::bit_width(stream.bitspec.size() - 1);
    Scope* scope = stream.bitspec.empty() ? outer : &own;
    if (!stream.endless) {
      for (int64_t i = 0; i < stream.least; ++i) run(stream, scope, phase_);
      return;
    }
    size_t choices = 0;
    for (const auto& item : stream.body) {
      if (const auto* found = std::get_if<std::shared_ptr<const Stream::Choice>>(&item)) {
        choices = std::max(choices, (*found)->choices.size());
      }
    }
    const int64_t least = std::max<int64_t>(stream.least, choices > 0 ? 1 : 0);
    for (int64_t i = 0; i < least; ++i) run(stream, scope, 0);
    for (int i = 0; i < repeats_; ++i) {
      segments_.push_back({Segment::kRepeat, {}});
      run(stream, scope, 1);
    }
    segments_.push_back({Segment::kEnding, {}});
    if (choices == kFirstLaterLast) run(stream, scope, 2);
  }

  void run(const Stream& stream, Scope* scope, size_t phase) {
    const Rational start = start_;
    const size_t outer_phase = phase_;
    start_ = now_;
    phase_ = phase;
    play(stream.body, scope);
    if (scope != nullptr && !scope->queue.empty()) throw Error("bits left over");
    start_ = start;
    phase_ = outer_phase;
  }

  static constexpr size_t kFirstLaterLast = 3;  // [first][later][last]

  const Protocol& protocol_;
  Parameters state_;
  Lookup get_;
  int repeats_;
  std::vector<std::pair<Segment, Signed>> segments_;
  Rational now_, start_;
  size_t phase_ = 0;
};

Protocol::Protocol(std::string name, std::string_view definition) : name_(std::move(name)) {
  Parser(definition).parse(*this);
}
Protocol::~Protocol() = default;
Protocol::Protocol(Protocol&&) noexcept = default;

Lookup Protocol::lookup(const Parameters& given) const {
  return [this, &given](std::string_view name) -> int64_t {
    if (const auto found = given.find(name); found != given.end()) return found->second;
    for (const Parameter& parameter : parameters_) {
      if (parameter.name == name && parameter.preset) return parameter.preset(lookup(given));
    }
    const auto definition = definitions_.find(name);
    return definition == definitions_.end() ? constant(name) : definition->second(lookup(given));
  };
}

Parameters Protocol::complete(const Parameters& given) const {
  const Lookup get = lookup(given);
  Parameters full;
  for (const Parameter& parameter : parameters_) {
    const int64_t value = get(parameter.name);
    if (value < parameter.low || value > parameter.high) {
      throw Error(name_ + ": " + parameter.name + "=" + std::to_string(value) + " is out of range");
    }
    full[parameter.name] = value;
  }
  for (const auto& [name, value] : given) {
    if (!full.contains(name)) throw Error(name_ + " has no parameter " + name);
  }
  return full;
}

Rendering Protocol::render(const Parameters& given, int repeats) const {
  const Player player(*this, complete(given), repeats);
  Rendering result;
  Signed joined;
  for (const auto& [kind, durations] : player.segments()) {
    if (durations.empty()) continue;
    result.parts.push_back({kind, rounded(durations)});
    for (const Rational& length : durations) append(joined, length);
  }
  result.joined = rounded(joined);
  return result;
}

Expression parse_expression(std::string_view text) {
  return Parser(text).whole_expression();
}

const std::map<std::string, Protocol, std::less<>>& protocols() {
  static const auto table = [] {
    std::map<std::string, Protocol, std::less<>> found;
    std::ifstream file(TEST_DATA "/protocols.irp");
    for (std::string line; std::getline(file, line);) {
      const size_t tab = line.find('\t');
      if (line.starts_with('#') || tab == std::string::npos) continue;
      const std::string name = line.substr(0, tab);
      found.emplace(name, Protocol(name, line.substr(tab + 1)));
    }
    return found;
  }();
  return table;
}

const Protocol& protocol(std::string_view name) {
  const auto found = protocols().find(name);
  if (found == protocols().end()) throw Error("no protocol " + std::string(name));
  return found->second;
}

std::string csv(const std::vector<int>& durations) {
  std::string text;
  for (const int length : durations) {
    if (!text.empty()) text += ',';
    text += std::to_string(length);
  }
  return text;
}

}  // namespace irp
