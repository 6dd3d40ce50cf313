#include "HostKit/Resources/GrcTokens.hpp"

#include <cctype>
#include <stdexcept>

namespace hostkit {

namespace {

class Reader {
  public:
    Reader(std::string_view text, const std::string& file) : text(text), file(file) {}

    std::vector<GrcToken> Tokens() {
        Take("\xEF\xBB\xBF");
        std::vector<GrcToken> tokens;
        do {
            SkipBlanks();
            tokens.push_back(Next());
        } while (tokens.back().kind != GrcToken::Kind::end);
        return tokens;
    }

  private:
    using Kind = GrcToken::Kind;

    bool AtEnd() const { return position == text.size(); }
    char Peek() const { return AtEnd() ? '\0' : text[position]; }

    char Advance() {
        if (text[position] == '\n') ++line;
        return text[position++];
    }

    bool Take(std::string_view expected) {
        if (!text.substr(position).starts_with(expected)) return false;
        position += expected.size();
        return true;
    }

    void SkipBlanks() {
        while (!AtEnd()) {
            if (Take("//")) {
                while (!AtEnd() && Peek() != '\n')
                    Advance();
            } else if (text.substr(position).starts_with("/*")) {
                SkipComment();
            } else if (std::isspace(static_cast<unsigned char>(Peek())) != 0) {
                Advance();
            } else {
                return;
            }
        }
    }

    void SkipComment() {
        const int begin = line;
        position += 2;
        while (!Take("*/")) {
            if (AtEnd()) ThrowGrcError(file, begin, "the comment has no end");
            Advance();
        }
    }

    GrcToken Next() {
        const int begin = line;
        const char c = Peek();
        if (AtEnd()) return {Kind::end, "", begin};
        if (c == '"') return {Kind::text, Quoted('"'), begin};
        if (c == '\'') return {Kind::type, Quoted('\''), begin};
        if (Take("{")) return {Kind::open, "{", begin};
        if (Take("}")) return {Kind::close, "}", begin};
        if (Take("|")) return {Kind::bar, "|", begin};

        std::string word;
        while (IsWordCharacter(Peek()))
            word += Advance();
        if (word.empty()) ThrowGrcError(file, line, std::string("unexpected character ") + c);
        return {IsNumber(word) ? Kind::number : Kind::word, word, begin};
    }

    static bool IsWordCharacter(char c) {
        return std::isalnum(static_cast<unsigned char>(c)) != 0 || c == '_' || c == '-';
    }

    static bool IsNumber(const std::string& word) {
        return word.find_first_not_of("0123456789", word[0] == '-' ? 1 : 0) == std::string::npos &&
               word != "-";
    }

    std::string Quoted(char quote) {
        const int begin = line;
        ++position;
        std::string result;
        while (Peek() != quote) {
            if (AtEnd() || Peek() == '\n') ThrowGrcError(file, begin, "the text has no closing quote");
            result += Peek() == '\\' ? Escaped() : Advance();
        }
        ++position;
        return result;
    }

    char Escaped() {
        ++position;
        if (AtEnd()) ThrowGrcError(file, line, "the text has no closing quote");
        switch (const char c = Advance()) {
            case 'n':
                return '\n';
            case 't':
                return '\t';
            case '"':
            case '\'':
            case '\\':
                return c;
            default:
                ThrowGrcError(file, line, std::string("unknown escape \\") + c);
        }
    }

    std::string_view text;
    const std::string& file;
    std::size_t position = 0;
    int line = 1;
};

}  // namespace

std::vector<GrcToken> ReadGrcTokens(std::string_view text, const std::string& file) {
    return Reader(text, file).Tokens();
}

void ThrowGrcError(const std::string& file, int line, const std::string& what) {
    throw std::runtime_error(file + ":" + std::to_string(line) + ": " + what);
}

}  // namespace hostkit
