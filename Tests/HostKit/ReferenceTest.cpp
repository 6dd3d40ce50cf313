#include <gtest/gtest.h>

#include "Array.hpp"
#include "BM.hpp"
#include "DGBrowserJSHandler.hpp"
#include "HashTable.hpp"
#include "Ref.hpp"
#include "Support.hpp"

namespace {

struct Counted {
    explicit Counted(int& alive) : alive(alive) { ++alive; }
    virtual ~Counted() { --alive; }
    int& alive;
};

struct Special : Counted {
    using Counted::Counted;
};

std::string MessageOf(const std::function<void()>& action) {
    try {
        action();
    } catch (const GS::Exception& exception) {
        return exception.what();
    }
    return "nothing was thrown";
}

}  // namespace

TEST(Ref, SharesAndCasts) {
    int alive = 0;
    {
        GS::Ref<Counted> base = GS::Ref<Special>(new Special(alive));
        const GS::Ref<Special> special = GS::DynamicCast<Special>(base);
        EXPECT_EQ(base, special);
        base = nullptr;
        EXPECT_EQ(alive, 1);
    }
    EXPECT_EQ(alive, 0);
}

TEST(Ref, SaysWhatWentWrong) {
    int alive = 0;
    const GS::Ref<Counted> plain = new Counted(alive);
    const GS::Ref<Counted> empty;
    EXPECT_EQ(MessageOf([&] { GS::DynamicCast<Special>(plain); }), "Bad cast.");
    EXPECT_TRUE(GS::DynamicCast<Special>(empty) == nullptr);
    EXPECT_EQ(MessageOf([&] { empty->alive = 5; }), "Null reference.");
    EXPECT_EQ(MessageOf([&] { (void)*empty; }), "Null reference.");
}

TEST(Containers, RefuseWhatTheyDoNotHold) {
    GS::Array<int> array = {1, 2, 3};
    EXPECT_THROW(array[3], GS::IllegalReferenceException);
    EXPECT_THROW(array.Delete(3), GS::IllegalReferenceException);
    EXPECT_THROW(GS::Array<int>().GetLast(), GS::IllegalReferenceException);
    array.Append(array);
    array.Delete(0);
    EXPECT_EQ(array, (GS::Array<int>{2, 3, 1, 2, 3}));

    GS::HashTable<GS::UniString, int> table;
    EXPECT_THROW(table["x"], GS::IllegalReferenceException);
    int value = 7;
    EXPECT_FALSE(table.Get("x", &value));
    EXPECT_EQ(value, 7);
}

TEST(HashTable, KeepsTheOrderOfAdding) {
    GS::HashTable<GS::UniString, int> table;
    int number = 0;
    for (const char* name : {"m", "a", "z", "b"})
        table.Add(name, ++number);
    EXPECT_FALSE(table.Add("a", 9));
    table.Put("z", 30);
    EXPECT_TRUE(table.Delete("a"));
    EXPECT_FALSE(table.Delete("a"));
    table.Put("a", 5);

    std::string seen;
    for (const auto pair : table)
        seen += hostkit::ToUtf8(*pair.key) + std::to_string(*pair.value) + " ";
    EXPECT_EQ(seen, "m1 z30 b4 a5 ");
    EXPECT_EQ(table["b"], 4);
}

TEST(ScriptValues, ReadAsTheirOwnKindOnly) {
    EXPECT_EQ(DG::JSValue(3).GetInteger(), 3);
    EXPECT_EQ(DG::JSValue(3).GetDouble(), 0.0);
    EXPECT_EQ(DG::JSValue(4000000000U).GetUInteger(), 4000000000U);
    EXPECT_EQ(DG::JSValue(true).GetType(), DG::JSValue::BOOL);
    EXPECT_EQ(DG::JSValue("true").GetType(), DG::JSValue::STRING);
    EXPECT_FALSE(DG::JSValue("true").GetBool());
}

TEST(Handles, AreCounted) {
    const Int64 before = hostkit::LiveHandles();
    GSHandle handle = BMAllocateHandle(40, ALLOCATE_CLEAR, 0);
    ASSERT_NE(handle, nullptr);
    EXPECT_EQ(BMGetHandleSize(handle), 40);
    EXPECT_EQ((*handle)[39], 0);
    EXPECT_EQ(hostkit::LiveHandles(), before + 1);
    BMKillHandle(&handle);
    BMKillHandle(&handle);
    EXPECT_EQ(handle, nullptr);
    EXPECT_EQ(hostkit::LiveHandles(), before);

    GSPtr block = BMReallocPtr(nullptr, 2, REALLOC_MOVEABLE, 0);
    block[1] = 'x';
    block = BMReallocPtr(block, 100'000, REALLOC_MOVEABLE, 0);
    EXPECT_EQ(block[1], 'x');
    BMKillPtr(&block);
    EXPECT_EQ(BMAllocateHandle(-1), nullptr);
}
