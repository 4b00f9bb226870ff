// SPDX-License-Identifier: GPL-3.0-or-later
// Recursive descent over the tokens of a definition, one function per construct of the notation.
#include <algorithm>
#include <charconv>
#include <initializer_list>
#include <optional>

#include "lib/irp/definition.h"
#include "lib/irp/error.h"
#include "lib/irp/tokens.h"

namespace irp {
namespace {

constexpr int kDefaultCarrierHz = 38000;
constexpr int64_t kUsPerSecond = 1'000'000;
constexpr int kDeepest = 40;             // brackets and signs within each other
constexpr int kLongestExpression = 500;  // values and operators

class Parser {
 public:
  explicit Parser(std::string_view text) : tokens_(tokens(text)) {}

  Definition definition() {
    Definition found;
    general(found);
    found.stream = stream();
    while (!token().empty()) {
      if (expect({"{", "["}) == "{") {
        names(found);
      } else {
        parameters(found);
      }
    }
    return found;
  }

  ExpressionPtr whole_expression() {
    ExpressionPtr value = expression();
    expect({""});
    return value;
  }

  /// Runs a step; what it finds wrong is wrong here.
  template <typename Step>
  auto placed(const Step& step) -> decltype(step()) {
    try {
      return step();
    } catch (const SyntaxError&) {
      throw;
    } catch (const Error& fault) {
      throw SyntaxError(column_, fault.what());
    }
  }

 private:
  using Words = std::initializer_list<std::string_view>;

  /// Counts how deep the text nests, so that no text can exhaust the stack.
  class Level {
   public:
    explicit Level(Parser& parser) : depth_(parser.depth_) {
      if (++depth_ > kDeepest) parser.fail("nested too deep");
    }
    Level(const Level&) = delete;
    Level& operator=(const Level&) = delete;
    ~Level() { --depth_; }

   private:
    int& depth_;
  };

  std::string_view token(size_t ahead = 0) const {
    return tokens_[std::min(at_ + ahead, tokens_.size() - 1)].text;
  }
  std::string_view next() {
    const std::string_view now = token();
    column_ = tokens_[std::min(at_, tokens_.size() - 1)].column;
    ++at_;
    return now;
  }
  bool accept(std::string_view wanted) {
    if (token() != wanted) return false;
    next();
    return true;
  }
  std::string_view expect(Words wanted) {
    if (std::ranges::find(wanted, token()) == wanted.end()) {
      std::string text;
      for (const std::string_view word : wanted) {
        text.append(text.empty() ? "" : " or ").append(shown(word));
      }
      fail("expected " + text + ", found " + shown(token()));
    }
    return next();
  }
  bool number_next() const { return !token().empty() && is_digit(token()[0]); }

  static std::string shown(std::string_view word) {
    if (word.empty()) return "the end";
    return std::string("'").append(word).append("'");
  }
  [[noreturn]] void fail(const std::string& what) const {
    throw SyntaxError(tokens_[std::min(at_, tokens_.size() - 1)].column, what);
  }

  /// Long expressions would make a signal of many fields take for ever.
  template <typename Node>
  ExpressionPtr tree(Node node) {
    if (++nodes_ > kLongestExpression) fail("an expression that is too long");
    return std::make_shared<const Expression>(Expression{std::move(node)});
  }

  // Expressions.
  ExpressionPtr expression(int level = kLoosest) {
    if (level == kTightest) return unary();
    Chain found{expression(level + 1), {}};
    while (const Operator* operation = find_operator(token(), level)) {
      next();
      found.rest.emplace_back(operation, expression(level + 1));
    }
    return found.rest.empty() ? found.first : tree(std::move(found));
  }

  ExpressionPtr unary() {
    const Level level(*this);
    for (const std::string_view symbol : {"-", "!", "#"}) {
      if (accept(symbol)) return tree(Unary{symbol[0], unary()});
    }
    Field found = field();
    const bool plain = !found.complemented && !found.width && !found.chop;
    return plain ? found.value : tree(std::move(found));
  }

  Field field() {
    Field found{};
    while (accept("~")) found.complemented = !found.complemented;
    found.value = primary();
    if (!accept(":")) return found;
    if (accept(":")) {
      found.chop = primary();
      return found;
    }
    found.reversed = accept("-");
    found.width = primary();
    if (accept(":")) found.chop = primary();
    return found;
  }

  ExpressionPtr primary() {
    if (accept("(")) {
      ExpressionPtr value = expression();
      expect({")"});
      return value;
    }
    if (number_next()) return tree(Number{literal()});
    return tree(Name{name()});
  }

  Rational literal() {
    if (!number_next()) fail("expected a number, found " + shown(token()));
    return number(next());
  }

  std::string name() {
    if (number_next() || token().empty() || !is_letter(token()[0])) {
      fail("expected a name or a number, found " + shown(token()));
    }
    return std::string(next());
  }

  // Streams.
  Stream stream() {
    const Level level(*this);
    Stream found;
    if (accept("<")) {
      do found.bitspec.push_back(items({"|", ">"}, kAdditive));
      while (tokens_[at_ - 1].text == "|");
    }
    expect({"("});
    found.body = items({")"});
    if (number_next()) {
      found.least = evaluate(Expression{Number{literal()}}, constant);
      found.endless = accept("+");
    } else if (token() == "*" || token() == "+") {
      found.least = next() == "+" ? 1 : 0;
      found.endless = true;
    }
    return found;
  }

  Stream::Items items(Words closers, int level = kLoosest) {
    Stream::Items found;
    while (std::ranges::find(closers, token()) == closers.end()) {
      found.push_back(item(level));
      if (!accept(",")) break;
    }
    expect(closers);
    return found;
  }

  Stream::Item item(int level) {
    nodes_ = 0;
    if (token() == "<" || (token() == "(" && !bracketed_field())) {
      return std::make_shared<const Stream>(stream());
    }
    if (token() == "[") return std::make_shared<const Stream::Choice>(choice());
    if (token(1) == "=") {
      std::string target = name();
      next();
      return Assignment{std::move(target), expression(level)};
    }
    if (accept("-")) return duration(Duration::Kind::kSpace, primary());
    if (accept("^")) return duration(Duration::Kind::kExtent, primary());
    Field found = field();
    if (found.width) return found;
    if (found.complemented || found.chop) fail("expected the width of a field");
    return duration(Duration::Kind::kMark, std::move(found.value));
  }

  Stream::Choice choice() {
    const Level level(*this);
    Stream::Choice found;
    while (accept("[")) found.choices.push_back(items({"]"}));
    return found;
  }

  Duration duration(Duration::Kind kind, ExpressionPtr length) {
    const bool suffixed = token() == "u" || token() == "m" || token() == "p";
    return {kind, std::move(length), suffixed ? next()[0] : '\0'};
  }

  /// Whether the bracket here closes before a colon: (expression):8 rather than a stream.
  bool bracketed_field() const {
    int depth = 0;
    for (size_t at = at_; at + 1 < tokens_.size(); ++at) {
      depth += tokens_[at].text == "(" ? 1 : tokens_[at].text == ")" ? -1 : 0;
      if (depth == 0) return tokens_[at + 1].text == ":";
    }
    fail("a bracket that is not closed");
  }

  // The sections around the stream.
  void general(Definition& definition) {
    int carrier = kDefaultCarrierHz;
    Rational unit{1, 1};
    char unit_suffix = 'u';
    expect({"{"});
    while (!accept("}")) {
      if (token() == "msb" || token() == "lsb") {
        definition.most_significant_first = next() == "msb";
      } else {
        const Rational value = literal();
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
    definition.carrier_hz = carrier;
    auto& scale = definition.scale;
    scale['u'] = {1, 1};
    scale['m'] = {1000, 1};
    scale['p'] = carrier == 0 ? Rational{1, 1} : reduced(kUsPerSecond, carrier);
    scale['\0'] = unit * scale[unit_suffix];
  }

  void names(Definition& definition) {
    while (!accept("}")) {
      std::string defined = name();
      expect({"="});
      nodes_ = 0;
      definition.names[std::move(defined)] = expression();
      accept(",");
    }
  }

  void parameters(Definition& definition) {
    while (!accept("]")) {
      Parameter found;
      nodes_ = 0;
      found.name = name();
      accept("@");
      expect({":"});
      found.low = evaluate(*expression(), constant);
      expect({".."});
      found.high = evaluate(*expression(), constant);
      if (found.high < found.low) throw Error("a range that ends before it begins");
      if (accept("=")) {
        const size_t begin = at_;
        found.preset = expression();
        for (size_t at = begin; at < at_; ++at) found.preset_text += tokens_[at].text;
      }
      definition.parameters.push_back(std::move(found));
      accept(",");
    }
  }

  std::vector<Token> tokens_;
  size_t at_ = 0;
  size_t column_ = 1;  // of the token taken last
  int depth_ = 0;
  int nodes_ = 0;  // of the expression being read
};

}  // namespace

Definition parse_definition(std::string_view text) {
  Parser parser(text);
  return parser.placed([&] { return parser.definition(); });
}

ExpressionPtr parse_expression(std::string_view text) {
  Parser parser(text);
  return parser.placed([&] { return parser.whole_expression(); });
}

int64_t constant(std::string_view name) {
  constexpr std::string_view kHead = "UINT", kTail = "_MAX";
  if (name.starts_with(kHead) && name.ends_with(kTail)) {
    name.remove_prefix(kHead.size());
    name.remove_suffix(kTail.size());
    int64_t bits = 0;
    const auto [end, fault] = std::from_chars(name.data(), name.data() + name.size(), bits);
    if (fault == std::errc() && end == name.data() + name.size()) return mask(bits);
  }
  throw Error(std::string(name) + " is not set");
}

}  // namespace irp
