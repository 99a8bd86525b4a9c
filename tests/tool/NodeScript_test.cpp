#include "controls/NodeScript.h"

#include <gtest/gtest.h>

namespace drevintool {
namespace {

std::vector<ScriptNode> parse(const std::string& text) {
  return parseNodeScript(text, "Drevin");
}

std::string valueOf(const std::string& line) {
  const std::vector<ScriptNode> nodes = parse("Drevin {\n " + line + "\n}\n");
  return nodes.size() == 1 && nodes[0].knobs.size() == 1 ? nodes[0].knobs[0].value.text : "?";
}

std::string faultOf(const std::string& text) {
  try {
    parse(text);
  } catch (const ScriptFault& fault) {
    return fault.what();
  }
  ADD_FAILURE() << "no fault";
  return {};
}

TEST(NodeScript, savedScript_givesItsNodesOfTheClass) {
  const auto nodes = parse(
      "#! /usr/bin/host -nx\n"
      "version 13.0 v1\n"
      "define_window_layout_xml {<?xml version=\"1.0\"?>\n<layout a=\"{\\{}\"/>\n}\n"
      "Root {\n inputs 0\n name /a/b.nk\n}\n"
      "push $cut_paste_input\n"
      "Drevin {\n focalPlane 2.7\n name Drevin1\n xpos -40\n}\n"
      "Group {\n name Group1\n}\n"
      " Drevin {\n  name Drevin2\n }\n"
      "end_group\n"
      "set N1 [stack 0]\n");
  ASSERT_EQ(nodes.size(), 2U);
  EXPECT_EQ(nodes[0].line, 11U);
  EXPECT_EQ(nodes[0].find("focalPlane")->text, "2.7");
  EXPECT_EQ(nodes[0].find("xpos")->text, "-40");
  EXPECT_EQ(nodes[1].find("name")->text, "Drevin2");
  EXPECT_EQ(nodes[1].find("focalPlane"), nullptr);
}

TEST(NodeScript, words_areBareQuotedOrBraced) {
  EXPECT_EQ(valueOf("a bare"), "bare");
  EXPECT_EQ(valueOf("a \"with blanks\""), "with blanks");
  EXPECT_EQ(valueOf("a {with {more} braces}"), "with {more} braces");
  EXPECT_EQ(valueOf("a \"\""), "");
  EXPECT_EQ(valueOf("a {}"), "");
  EXPECT_EQ(valueOf("a"), "");
  EXPECT_EQ(valueOf("a one two"), "one two");
}

TEST(NodeScript, backslashes_keepCharactersFromMeaning) {
  EXPECT_EQ(valueOf(R"(a "say \"hi\" \[x\] \$y \\ \{")"), R"(say "hi" [x] $y \ {)");
  EXPECT_EQ(valueOf(R"(a "two\nlines\tand")"), "two\nlines\tand");
  EXPECT_EQ(valueOf(R"(a Vista\ Vision)"), "Vista Vision");
  EXPECT_EQ(valueOf(R"(a {a \} b})"), R"(a \} b)");
}

TEST(NodeScript, valuesOverLines_areWhole) {
  EXPECT_EQ(valueOf("a {one\n two}"), "one\n two");
  EXPECT_EQ(valueOf("a \"one\n two\""), "one\n two");
}

TEST(NodeScript, byteOrderMark_isPassedOver) {
  const auto nodes = parse(
      "\xEF\xBB\xBF"
      "Drevin {\n bloom 1\n}\n");
  ASSERT_EQ(nodes.size(), 1U);
  EXPECT_EQ(nodes[0].find("bloom")->text, "1");
  EXPECT_TRUE(parse("\xEF\xBB\xBF").empty());
  EXPECT_TRUE(parse("\xEF\xBB").empty());
}

TEST(NodeScript, clones_areNodesThatSaySo) {
  for (const char* clone : {"clone node1|Drevin {\n name C\n}", "clone node1|Drevin|12 {name C}",
                            "clone node1|Drevin|12 Drevin {\n name C\n}"}) {
    const auto nodes = parse(std::string("Drevin {\n name A\n}\n") + clone);
    ASSERT_EQ(nodes.size(), 2U) << clone;
    EXPECT_FALSE(nodes[0].clone);
    EXPECT_TRUE(nodes[1].clone) << clone;
    EXPECT_EQ(nodes[1].line, 4U) << clone;
    EXPECT_EQ(nodes[1].find("name")->text, "C") << clone;
  }
  for (const char* other : {"clone node1|Blur {\n name C\n}", "clone node1|Drevins {\n name C\n}",
                            "clone $C1 {\n name C\n}", "clone Drevin"}) {
    EXPECT_TRUE(parse(other).empty()) << other;
  }
}

TEST(NodeScript, lastOfTwoValues_counts) {
  EXPECT_EQ(parse("Drevin {\n a 1\n a 2\n}")[0].find("a")->text, "2");
}

TEST(NodeScript, lineEndsOfOtherSystems_areBlanks) {
  const auto nodes = parse("Drevin {\r\n a 1\r\n b 2\r\n}\r\n");
  ASSERT_EQ(nodes.size(), 1U);
  EXPECT_EQ(nodes[0].find("a")->text, "1");
  EXPECT_EQ(nodes[0].find("b")->text, "2");
}

TEST(NodeScript, nodeOnOneLine_isRead) {
  EXPECT_EQ(parse("Drevin {a 1; b 2}")[0].find("b")->text, "2");
}

TEST(NodeScript, otherText_holdsNoNodes) {
  for (const char* text : {"", "\n\n", "# Drevin {", "Drevin", "Drevin x", "Drevins {}", "}{", "{}",
                           "Drevin {a 1} {b 2}"}) {
    if (std::string(text) == "}{") continue;  // a brace that has no end
    EXPECT_TRUE(parse(text).empty()) << text;
  }
}

TEST(NodeScript, bracesAndQuotesWithoutEnd_nameTheirLine) {
  EXPECT_EQ(faultOf("a 1\nDrevin {\n b {\n"), "line 2: a brace that has no end");
  EXPECT_EQ(faultOf("\n\na \"b\n"), "line 3: a quote that has no end");
  EXPECT_EQ(faultOf("x 1\nDrevin {\n\n b \"c\n}"), "line 4: a quote that has no end");
  EXPECT_EQ(faultOf("Drevin {a \\"), "line 1: a brace that has no end");
}

TEST(NodeScript, depthOfBraces_isLimited) {
  const std::string deep(100, '{');
  EXPECT_TRUE(parse("a " + deep + std::string(100, '}')).empty());
  EXPECT_NE(faultOf("a {" + deep + std::string(101, '}')).find("more than 100"), std::string::npos);
  EXPECT_NE(faultOf("a " + std::string(1000000, '{')).find("more than 100"), std::string::npos);
}

TEST(NodeScript, tooLargeText_isRefused) {
  EXPECT_NE(faultOf(std::string(kMostScriptBytes + 1, ' ')).find("64 MiB"), std::string::npos);
}

TEST(NodeScript, nodesKnobsAndWordsBeyondTheMost_areRefused) {
  std::string nodes;
  std::string knobs = "Drevin {\n";
  std::string words = "push";
  for (std::size_t i = 0; i <= kMostScriptValues; ++i) {
    nodes += "Drevin {}\n";
    knobs += "k\n";
    words += " w";
  }
  EXPECT_EQ(faultOf(nodes), "line 262145: more than 262144 nodes and values of them");
  EXPECT_EQ(faultOf(knobs + "}"), "line 1: more than 262144 nodes and values of them");
  EXPECT_EQ(faultOf(words), "line 1: a command of too many words");
  EXPECT_THROW(scriptWords(words), ScriptFault);
}

TEST(NodeScript, wordsOfAValue_areApartByBlanksLinesAndSemicolons) {
  std::vector<std::string> texts;
  for (const ScriptWord& word : scriptWords(" ;a {b c}\n;\"d e\";"))
    texts.push_back(word.text);
  EXPECT_EQ(texts, (std::vector<std::string>{"a", "b c", "d e"}));
  EXPECT_TRUE(scriptWords(" ; \n;").empty());
}

TEST(NodeScript, anyBytes_endInNodesOrAFault) {
  std::string text = "Drevin {\n a {b \"c\" {d}} \\\n e \"f\\\"\"\n}\n";
  unsigned state = 1;
  for (int round = 0; round < 20000; ++round) {
    state = state * 1664525U + 1013904223U;
    std::string hostile = text;
    for (unsigned changes = state >> 30U, i = 0; i <= changes; ++i) {
      state = state * 1664525U + 1013904223U;
      const char signs[] = {'{', '}', '"', '\\', '\n', ' ', ';', '#', '\0', '\xff', 'x', '\r'};
      hostile[(state >> 8U) % hostile.size()] = signs[(state >> 24U) % sizeof signs];
    }
    try {
      for (const ScriptNode& node : parse(hostile))
        EXPECT_LE(node.knobs.size(), hostile.size());
      EXPECT_LE(scriptWords(hostile).size(), hostile.size());
    } catch (const ScriptFault& fault) {
      EXPECT_EQ(std::string(fault.what()).rfind("line ", 0), 0U) << fault.what();
    }
  }
}

}  // namespace
}  // namespace drevintool
