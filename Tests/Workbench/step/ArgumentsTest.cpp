#include "Workbench/step/Arguments.hpp"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace workbench::step {
namespace {

using testing::ElementsAre;

TEST(StepArguments, AreSplitOutsideStringsListsAndComments) {
    EXPECT_THAT(Arguments("#1=IFCX(#2,$,*,'a,b',(#3,(4.,5.)),.T.,IFCLABEL('x)'));"),
                ElementsAre("#2", "$", "*", "'a,b'", "(#3,(4.,5.))", ".T.", "IFCLABEL('x)')"));
    EXPECT_THAT(Arguments("# 1"), ElementsAre());
    EXPECT_THAT(Arguments("#1 = IFCX ( #2 , /* , */ 'it''s' /* end */ ) ;"), ElementsAre("#2", "'it''s'"));
    EXPECT_THAT(Arguments(R"(#1=IFCX('\S\'',2);)"), ElementsAre(R"('\S\'')", "2"));
    EXPECT_THAT(Arguments("(#1,#2)"), ElementsAre("#1", "#2"));
    EXPECT_THAT(Arguments("( )"), ElementsAre());
    EXPECT_THAT(Arguments("#1=IFCX();"), ElementsAre());
    EXPECT_THAT(Arguments("#1=IFCX(,);"), ElementsAre("", ""));
    EXPECT_THAT(Arguments("#1=(IFCA(#2)IFCB(#3));"), ElementsAre());
    EXPECT_EQ(Argument("#1=IFCX(a,b,c);", 2), "c");
    EXPECT_EQ(Argument("#1=IFCX(a,b,c);", 3), "$");
}

TEST(StepArguments, ReferencesAreNeitherInNumbersNorInStringsNorTheRecordItself) {
    EXPECT_THAT(References("#1=IFCX(#2,'#3',1.#INF,-1.#IND,(#4, #5),/*#6*/#7,#92147483647);"),
                ElementsAre(2, 4, 5, 7, 92147483647));
    EXPECT_THAT(References("#1=(IFCA(#2)IFCB((#3)));"), ElementsAre(2, 3));
    EXPECT_THAT(References("(#99999999999999999999,#4#5,#6x)"), ElementsAre());
    EXPECT_EQ(AsReference("#12"), 12);
    EXPECT_EQ(AsReference("12"), std::nullopt);
    EXPECT_EQ(AsReference("#12x"), std::nullopt);
}

TEST(StepArguments, ReadValues) {
    EXPECT_EQ(AsReal("1."), 1.0);
    EXPECT_EQ(AsReal("-1.5E-3"), -0.0015);
    EXPECT_EQ(AsReal("+2"), 2.0);
    EXPECT_EQ(AsReal("IFCLENGTHMEASURE(0.0254)"), 0.0254);
    EXPECT_EQ(AsReal("-1.#IND"), std::nullopt);
    EXPECT_EQ(AsReal("$"), std::nullopt);
    EXPECT_EQ(AsText("IFCLABEL('W\\X\\E4nde')"), "Wände");
    EXPECT_EQ(AsText("''"), "");
    EXPECT_EQ(AsText("'"), std::nullopt);
    EXPECT_EQ(AsText("$"), std::nullopt);
    EXPECT_EQ(AsEnum(".METRE."), "METRE");
    EXPECT_EQ(AsEnum(".."), "");
}

TEST(StepArguments, AreReplacedAndRelievedOfReferences) {
    EXPECT_EQ(WithArgument("#1=IFCX(#2, 'a' ,$);", 1, "'b'"), "#1=IFCX(#2, 'b' ,$);");
    EXPECT_EQ(WithArgument("#1=IFCX(#2);", 1, "'b'"), "#1=IFCX(#2);");

    const auto even = [](uint64_t id) { return id % 2 == 0; };
    const auto without = [&](std::string_view text) { return WithoutReferences(text, even); };
    EXPECT_EQ(without("#1=IFCX(#2,#3,(#4,#5,#6),(#7),(#8,#9),(#9,#8));"),
              "#1=IFCX(#2,$,(#4,#6),(),(#8),(#8));");
    EXPECT_EQ(without("#1=IFCX((#3,#5 , #4),((#3),(#4)));"), "#1=IFCX(( #4),((),(#4)));");
    EXPECT_EQ(without("#1= IFCX('(#3,',/*#3*/#4,1.#INF,IFCY(#3));"),
              "#1= IFCX('(#3,',/*#3*/#4,1.#INF,IFCY($));");
    EXPECT_EQ(without("#1=(IFCA(#3)IFCB((#3,#4)));"), "#1=(IFCA($)IFCB((#4)));");
    EXPECT_EQ(without("(#3,#4,#5)"), "(#4)") << "a list alone";
}

}  // namespace
}  // namespace workbench::step
