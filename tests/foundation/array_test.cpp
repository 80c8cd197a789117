// Growable arrays: one refusal per rule with its stored cause, name and location, growth by a
// constant step, shrinking, copying, searches and sorts. The classes share one storage engine, so
// its rules are checked once; what a class does on its own is checked per class.
#include <climits>
#include <vector>

#include "nu_test.h"
#include "numorix/foundation/obj_array.h"
#include "numorix/foundation/tolerance.h"

namespace numorix {
namespace {

using test::Doubles;
using test::Elements;
using test::Ints;
using VD = std::vector<double>;

TEST(ArrayRefusals, EachRuleStoresItsCauseNameLocationAndRange) {
    CNuDoubleArray d = Doubles({1, 2, 3, 4, 5}, 10), s = Doubles({1, 2}, 4), dEmpty;
    CNuIntArray n(3), nEmpty;
    CNuObjArray o;
    test::ExpectFailures<CNuConstructionException>({
        {[] { CNuDoubleArray a(-1); }, 2, "size", "CNuDoubleArray"},
        {[] { CNuIntArray a(0, 0); }, 15, "nArrayExpandSize", "CNuIntArray"},
    });
    test::ExpectFailures<CNuOperationException>({
        {[&] { d.Append(d); }, 118, "Append operation", "CNuDoubleArray::Append()"},
        {[&] { n.Append(n); }, 118, "Append operation", "CNuIntArray::Append()"},
        {[&] { o.Append(o); }, 118, "Append operation", "CNuObjArray::Append()"},
        {[&] { s.SetCapacity(4); }, 114, "SetSize operation", "CNuDoubleArray::SetSize()"},
        {[&] { n.SetExpandSize(0); }, 114, "SetExpandSize operation",
         "CNuIntArray::SetExpandSize(int NewXSize)"},
        {[&] { d.Truncate(6); }, 114, "Truncate operation", "CNuDoubleArray::Truncate(int Size)", 0,
         4},
        {[&] { d[5]; }, 103, "element operator[]", "CNuDoubleArray", 0, 4},
        {[&] { dEmpty[0]; }, 108, "element operator[]", "CNuDoubleArray"},
        // The double array's First and Last name CNuIntArray: the texts stay as they are.
        {[&] { dEmpty.First(); }, 108, "First operator[]", "CNuIntArray::First()"},
        {[&] { dEmpty.Last(); }, 108, "Last operator[]", "CNuIntArray::Last()"},
        {[&] { d.Remove(5); }, 103, "Remove operation", "CNuDoubleArray::Remove()"},
        {[&] { nEmpty.Remove(0); }, 108, "Remove operation", "CNuIntArray::Remove()"},
        {[&] { d.SubArray(-1, 2); }, 103, "SubArray operation", "CNuDoubleArray::SubArray(i, j)"},
        {[&] { d.SubArray(0, 5); }, 103, "SubArray operation", "CNuDoubleArray::SubArray(i, j)"},
        // The order test comes after the range test, which does not bound i from above.
        {[&] { d.SubArray(9, 2); }, 115, "SubArray operation", "CNuDoubleArray::SubArray(i, j)"},
        {[&] { d.SubArray(n); }, 105, "SubArray operation",
         "CNuDoubleArray::SubArray(const CNuIntArray& ip)"},
        {[&] { dEmpty.Max(); }, 108, "Max operation", "CNuDoubleArray::Max()"},
    });
}

TEST(ArrayCapacity, AddGrowsByTheConstantStepNeverByDoubling) {
    CNuDoubleArray a;
    CNuIntArray b(2, 3);
    std::vector<int> seen;
    for (int i = 0; i < 1000; ++i) {
        a.Add(i);
        if (i == 0 || i == 10 || i == 999) seen.push_back(a.GetCapacity());
        if (i < 3) b.Add(i);
    }
    EXPECT_EQ(seen, (std::vector<int>{10, 20, 1000})) << "never by doubling";
    EXPECT_EQ(b.GetCapacity(), 5);  // 2, then one step of 3
}

TEST(ArrayCapacity, SetSizeAndAppendGrowItExactlyAndTruncateAndFreeExtraShrinkItToTheSize) {
    const struct {
        const char* pszWhat;
        void (*pfn)(CNuDoubleArray&);
        VD elements;
        int nCapacity;
    } cases[] = {
        {"SetSize(7)", [](auto& a) { a.SetSize(7); }, {1, 2, 3}, 7},
        {"Append", [](auto& a) { a.Append(Doubles(VD(4, 9.0))); }, {1, 2, 3, 9, 9, 9, 9}, 7},
        {"Truncate(2)", [](auto& a) { a.Truncate(2); }, {1, 2}, 2},
        {"Truncate(3)", [](auto& a) { a.Truncate(3); }, {1, 2, 3}, 3},
        {"Truncate(0)", [](auto& a) { a.Truncate(0); }, {}, 0},
        {"FreeExtra", [](auto& a) { a.FreeExtra(); }, {1, 2, 3}, 3},
        {"Remove(1)", [](auto& a) { a.Remove(1); }, {1, 3}, 6},
        {"Clear", [](auto& a) { a.Clear(); }, {}, 6},
    };
    for (const auto& c : cases) {
        CNuDoubleArray a = Doubles({1, 2, 3}, 6);
        c.pfn(a);
        EXPECT_EQ(Elements(a), c.elements) << c.pszWhat;
        EXPECT_EQ(a.GetCapacity(), c.nCapacity) << c.pszWhat;
    }
}

TEST(ArrayCapacity, TheAssertFlagMakesIntegerTruncationDoNothing) {
    // The flag is restored at the end, as a tolerance would be.
    test::ScopedTolerance flag([] { return double(CNuException::m_nAssert); },
                               [](double v) { CNuException::m_nAssert = int(v); }, 0.0);
    CNuIntArray n = Ints({0, 1, 2, 3, 4});
    n.Truncate(4);
    CNuException::SetAssert();
    EXPECT_EQ(CNuException::IsAssertEnabled(), 1);
    n.Truncate(-7);  // not even validated
    n.Truncate(2);
    EXPECT_EQ(Elements(n), (std::vector<int>{0, 1, 2, 3}));
}

TEST(ArrayCopy, AssignmentKeepsALargerBufferAndCopiesTakeTheSourceCapacity) {
    CNuDoubleArray big = Doubles({9, 9, 9, 9, 9, 9}, 10), small = Doubles({1, 2}, 4);
    small.SetExpandSize(3);
    big = small;
    EXPECT_EQ(Elements(big), (VD{1, 2}));
    EXPECT_EQ(std::vector<int>({big.GetCapacity(), big.GetExpandSize()}),
              std::vector<int>({10, 3}));
}

TEST(ArraySearch, FindMaxMinSubArrayAndPredicatesFollowTheirStrictTests) {
    CNuDoubleArray a = Doubles({1.0, 2.0, 2.05, 3.0});
    // The first element strictly nearer than the tolerance: a distance equal to it does not count.
    EXPECT_EQ(std::vector<int>({a.Find(2.04, 0.02), a.Find(2.04, 0.05), a.Find(1.5, 0.5)}),
              std::vector<int>({2, 1, -1}));
    EXPECT_EQ(Doubles({3.0, -8.0, 5.0}).Max() - Doubles({3.0, -8.0, 5.0}).Min(), 13.0);
    EXPECT_EQ(Elements(a.SubArray(1, 2)), (VD{2.0, 2.05})) << "an inclusive range";
    EXPECT_EQ(Elements(a.SubArray(Ints({1, 0, 0, 1}))), (VD{1.0, 3.0})) << "a mask";
    test::ScopedTolerance large(NuGetLarge, NuSetLarge, 2.0);  // the searches start at it
    EXPECT_EQ(Doubles({-7.0, -9.0}).Max(), -2.0);
    EXPECT_EQ(Doubles({7.0}).Min(), 2.0);
    const CNuDoubleArray b = Doubles({1.0, 2.25}, 7), c = Doubles({1.0, 2.0});
    EXPECT_EQ(std::vector<int>(
                  {c.IsEqual(b, 0.25), c.IsEqual(b, 0.3), Doubles({0.0, 2.0}).IsEqual(c, 0.5)}),
              std::vector<int>({0, 1, 0}));
    const CNuDoubleArray tie = Doubles({1, 1, 2}), drop = Doubles({1, 3, 2});
    EXPECT_EQ(
        std::vector<int>({tie.IsMonotonicIncreasing(), tie.IsStrictlyIncreasing(),
                          drop.IsMonotonicIncreasing(), Doubles({1, 3}).IsStrictlyIncreasing()}),
        std::vector<int>({1, 0, 0, 1}));
}

TEST(ArraySort, IntegerSortsAreStableAndSumsWrapAround) {
    CNuIntArray n = Ints({5, -2, 5, 0}), index;
    n.Sort(&index);
    EXPECT_EQ(Elements(index), (std::vector<int>{1, 3, 0, 2}));
    n.Sort();
    EXPECT_EQ(Elements(n), (std::vector<int>{-2, 0, 5, 5}));
    EXPECT_EQ(Ints({INT_MAX, 2, -2, 1}).Sum(), INT_MIN) << "two's complement";
    EXPECT_EQ(Doubles({0.5, 0.25}).Sum(), 0.75);
}

}  // namespace
}  // namespace numorix
