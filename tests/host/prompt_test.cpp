#include <gtest/gtest.h>

#include <cstdio>
#include <memory>
#include <ravelin/frame/locale.hpp>
#include <ravelin/host/prompt.hpp>
#include <string>

namespace ravelin::host {
namespace {

TEST(Prompt, TellsExpressionsFromStatements) {
  struct Row {
    StringView line;
    bool expression;
  };
  const Row rows[] = {
      {u"1 + 2", true},
      {u"x", true},
      {u"a.item(0)", true},
      {u"(x = 1)", true},  // parenthesized: a comparison
      {u"1 = x", true},    // no variable on the left: a comparison
      {u"x = 1", false},   // an assignment
      {u"a.b = 2", false},
      {u"arr(1) = 2", false},
      {u"WScript.Echo 1, 2", false},
      {u"Dim y", false},
      {u"If x Then y = 1", false},
      {u"x = 1 : y = 2", false},
      {u"", false},
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(toUtf8(row.line));
    EXPECT_EQ(isExpressionInput(row.line), row.expression);
  }
}

struct TempFile {
  TempFile() : file(std::tmpfile()) {}
  ~TempFile() {
    if (file != nullptr) std::fclose(file);
  }
  std::string contents() const {
    std::rewind(file);
    std::string text;
    for (int c; (c = std::fgetc(file)) != EOF;)
      text.push_back(static_cast<char>(c));
    return text;
  }
  std::FILE* file;
};

void noFlush() {}

TEST(Prompt, RunsLinesKeepsStateAndSurvivesErrors) {
  ScopedLocale english(u"en-US");
  TempFile input, output, errors;
  ASSERT_TRUE(input.file && output.file && errors.file);
  std::fputs("x = 20\r\nx + 1\n1 / 0\ny = (\nx * 2\nSub Twice(v) : v = v * 2 : End Sub\nTwice x\nx",
             input.file);
  std::rewind(input.file);
  script::Interpreter interpreter;
  EXPECT_EQ(runPrompt(interpreter, input.file, output.file, errors.file, noFlush), 0);
  EXPECT_EQ(output.contents(), "21\n40\n40\n");
  std::string errorText = errors.contents();
  EXPECT_NE(errorText.find("<prompt>(1): error 11: Division by zero"), std::string::npos)
      << errorText;
  EXPECT_NE(errorText.find("syntax error 1023"), std::string::npos) << errorText;
}

}  // namespace
}  // namespace ravelin::host
