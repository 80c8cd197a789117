// Growable arrays: capacity semantics, growth, truncation, copying, and every refusal with its
// stored cause, name and location.
#include <functional>
#include <vector>

#include "nu_test.h"
#include "numorix/foundation/double_array.h"
#include "numorix/foundation/int_array.h"
#include "numorix/foundation/obj_array.h"
#include "numorix/foundation/tolerance.h"

namespace numorix {
namespace {

using Op = CNuOperationException;

CNuDoubleArray Filled(std::initializer_list<double> values, int nCapacity = 0) {
    CNuDoubleArray a(nCapacity);
    for (double d : values)
        a.Add(d);
    return a;
}

CNuIntArray Ints(std::initializer_list<int> values) {
    CNuIntArray a;
    for (int n : values)
        a.Add(n);
    return a;
}

std::vector<int> Elements(const CNuIntArray& a) {
    return std::vector<int>(a.GetData(), a.GetData() + a.GetSize());
}

// The storage beyond the size up to the capacity holds zeros only.
template <class A>
void ExpectZerosFrom(const A& a, int nFrom) {
    for (int i = nFrom; i < a.GetCapacity(); ++i)
        EXPECT_EQ(a.GetData()[i], 0) << "index " << i;
}

TEST(ArrayFailures, EveryRefusalStoresItsCauseNameAndLocation) {
    CNuDoubleArray d = Filled({1, 2, 3, 4, 5}, 10), s = Filled({1, 2}, 4), dEmpty;
    CNuIntArray n(3), nEmpty;
    CNuObjArray o;
    test::ExpectFailures<CNuConstructionException>({
        {[] { CNuDoubleArray a(-1); }, 2, "size", "CNuDoubleArray"},
        {[] { CNuDoubleArray a(-1, 0); }, 2, "size", "CNuDoubleArray"},
        {[] { CNuDoubleArray a(3, 0); }, 15, "nArrayExpandSize", "CNuDoubleArray"},
        {[] { CNuIntArray a(-2); }, 2, "size", "CNuIntArray"},
        {[] { CNuIntArray a(0, -3); }, 15, "nArrayExpandSize", "CNuIntArray"},
        {[] { CNuObjArray a(-2); }, 2, "size", "CNuObjArray"},
        {[] { CNuObjArray a(-2, 5); }, 2, "Size", "CNuObjArray"},
    });
    test::ExpectFailures<Op>({
        {[&] { d.Append(d); }, 118, "Append operation", "CNuDoubleArray::Append()"},
        {[&] { n.Append(n); }, 118, "Append operation", "CNuIntArray::Append()"},
        {[&] { o.Append(o); }, 118, "Append operation", "CNuObjArray::Append()"},
        {[&] { s.SetCapacity(4); }, 114, "SetSize operation", "CNuDoubleArray::SetSize()"},
        {[&] { s.SetSize(3); }, 114, "SetSize operation", "CNuDoubleArray::SetSize()"},
        {[&] { s.SetCapacity(-1); }, 114, "SetSize operation", "CNuDoubleArray::SetSize()"},
        {[&] { dEmpty.SetSize(0); }, 114, "SetSize operation", "CNuDoubleArray::SetSize()"},
        {[&] { n.SetCapacity(3); }, 114, "SetSize operation", "CNuIntArray::SetSize(int NewSize)"},
        {[&] { n.SetExpandSize(0); }, 114, "SetExpandSize operation",
         "CNuIntArray::SetExpandSize(int NewXSize)"},
        {[&] { d.SetExpandSize(0); }, 114, "SetExpandSize operation",
         "CNuDoubleArray::SetExpandSize()"},
        {[&] { o.SetSize(0); }, 114, "SetSize operation", "CNuObjArray::SetSize()"},
        {[&] { o.SetExpandSize(-4); }, 114, "SetExpandSize operation",
         "CNuObjArray::SetExpandSize()"},
        {[&] { d.Truncate(6); }, 114, "Truncate operation", "CNuDoubleArray::Truncate(int Size)"},
        {[&] { d.Truncate(-1); }, 114, "Truncate operation", "CNuDoubleArray::Truncate(int Size)"},
        {[&] { nEmpty.Truncate(1); }, 114, "Truncate operation", "CNuIntArray::Truncate(int Size)"},
        {[&] { d[-1]; }, 103, "element operator[]", "CNuDoubleArray"},
        {[&] { dEmpty[0]; }, 108, "element operator[]", "CNuDoubleArray"},
        {[&] { nEmpty[0]; }, 108, "element operator[]", "CNuIntArray"},
        {[&] { o[0]; }, 108, "element operator[]", "CNuObjArray"},
        // The double array's First and Last name CNuIntArray: the texts stay as they are.
        {[&] { dEmpty.First(); }, 108, "First operator[]", "CNuIntArray::First()"},
        {[&] { dEmpty.Last(); }, 108, "Last operator[]", "CNuIntArray::Last()"},
        {[&] { nEmpty.Last(); }, 108, "Last operator[]", "CNuIntArray::Last()"},
        {[&] { o.First(); }, 108, "First operator[]", "CNuObjArray::First()"},
        {[&] { o.Last(); }, 108, "Last operator[]", "CNuObjArray::Last()"},
        {[&] { d.Remove(5); }, 103, "Remove operation", "CNuDoubleArray::Remove()"},
        {[&] { nEmpty.Remove(0); }, 108, "Remove operation", "CNuIntArray::Remove()"},
        {[&] { d.SubArray(-1, 2); }, 103, "SubArray operation", "CNuDoubleArray::SubArray(i, j)"},
        {[&] { d.SubArray(0, 5); }, 103, "SubArray operation", "CNuDoubleArray::SubArray(i, j)"},
        // The order test comes after the range test, which does not bound i from above.
        {[&] { d.SubArray(9, 2); }, 115, "SubArray operation", "CNuDoubleArray::SubArray(i, j)"},
        {[] {
             Ints({3, 4}).SubArray(1, 0);
         },
         115, "SubArray operation", "CNuIntArray::SubArray(i, j)"},
        {[&] {
             d.SubArray(Ints({1, 0}));
         },
         105, "SubArray operation", "CNuDoubleArray::SubArray(const CNuIntArray& ip)"},
        {[&] { dEmpty.Max(); }, 108, "Max operation", "CNuDoubleArray::Max()"},
        {[&] { dEmpty.Min(); }, 108, "Min operation", "CNuDoubleArray::Min()"},
        {[&] { dEmpty.IsMonotonicIncreasing(); }, 108, "IsMonotonicIncreasing operation",
         "CNuDoubleArray::IsMonotonicIncreasing()"},
        {[&] { dEmpty.IsStrictlyIncreasing(); }, 108, "IsStrictlyIncreasing operation",
         "CNuDoubleArray::IsStrictlyIncreasing()"},
    });
}

TEST(ArrayFailures, RangeFailuresCarryTheValidRange) {
    CNuDoubleArray a = Filled({1, 2, 3, 4, 5}, 10);
    for (const std::function<void()>& f :
         {std::function<void()>([&] { a.Truncate(6); }), std::function<void()>([&] { a[5]; })}) {
        try {
            f();
            ADD_FAILURE() << "no refusal past the five elements";
        } catch (const Op& e) {
            EXPECT_EQ(e.m_nValue1, 0);
            EXPECT_EQ(e.m_nValue2, 4);
        }
    }
}

TEST(ArrayCapacity, TheConstructorSizeIsACapacityOfZeros) {
    CNuDoubleArray a(5);
    EXPECT_EQ(a.GetSize(), 0);
    EXPECT_EQ(a.GetCapacity(), 5);
    EXPECT_EQ(a.GetExpandSize(), 10);
    ExpectZerosFrom(a, 0);
    CNuDoubleArray empty;
    EXPECT_EQ(empty.GetData(), nullptr);
    EXPECT_EQ(empty.GetCapacity(), 0);
}

TEST(ArrayGrowth, AddGrowsByTheConstantStepNeverByDoubling) {
    CNuDoubleArray a;
    a.Add(1.0);
    EXPECT_EQ(a.GetCapacity(), 10);
    for (int i = 0; i < 10; ++i)
        a.Add(2.0 + i);
    EXPECT_EQ(a.GetCapacity(), 20);
    EXPECT_EQ(a.GetSize(), 11);
    for (int i = 0; i < 989; ++i)
        a.Add(0.5);
    EXPECT_EQ(a.GetSize(), 1000);
    EXPECT_EQ(a.GetCapacity(), 1000);
    EXPECT_EQ(a[10], 11.0);

    CNuIntArray b(2, 3);
    for (int i = 0; i < 6; ++i)
        b.Add(i);
    EXPECT_EQ(b.GetCapacity(), 8);  // 2, then 5, then 8
    b.SetExpandSize(1);
    for (int i = 6; i < 9; ++i)
        b.Add(i);
    EXPECT_EQ(b.GetCapacity(), 9);
}

TEST(ArrayGrowth, AppendGrowsToExactlyTheNeededSize) {
    CNuDoubleArray a = Filled({1, 2, 3}, 3);
    a.Append(Filled({4, 5}));
    EXPECT_EQ(a.GetCapacity(), 5);
    EXPECT_EQ(a.GetSize(), 5);
    EXPECT_EQ(a[4], 5.0);
    CNuDoubleArray c;
    c.Append(CNuDoubleArray());
    EXPECT_EQ(c.GetCapacity(), 0);
    EXPECT_EQ(c.GetData(), nullptr);
}

TEST(ArrayCapacity, SetSizeChangesTheCapacityNotTheSize) {
    CNuDoubleArray a = Filled({1, 2}, 4);
    a.SetSize(7);
    EXPECT_EQ(a.GetSize(), 2);
    EXPECT_EQ(a.GetCapacity(), 7);
    EXPECT_EQ(a[1], 2.0);
    ExpectZerosFrom(a, 2);
}

TEST(ArrayCapacity, GrowthZeroFillsEverythingBeyondTheElementsInUse) {
    // Removed and cleared elements linger in the spare room until the next growth, which
    // rebuilds the block as zeros plus the elements in use.
    CNuDoubleArray a = Filled({1, 2, 3}, 3);
    a.Remove(2);
    EXPECT_EQ(a.GetData()[2], 3.0);
    a.Add(4.0);  // fits: no growth
    a.Add(5.0);  // grows by the step of 10
    EXPECT_EQ(a.GetCapacity(), 13);
    EXPECT_EQ(a[3], 5.0);
    ExpectZerosFrom(a, 4);
    CNuIntArray n(4);
    for (int v : {7, 8, 9, 10})
        n.Add(v);
    n.Remove(0);
    n.Remove(0);
    n.SetCapacity(6);
    EXPECT_EQ(n[1], 10);
    ExpectZerosFrom(n, 2);
    n.Truncate(1);
    EXPECT_EQ(n[0], 9);
    EXPECT_EQ(n.GetCapacity(), 1);
}

TEST(ArrayTruncate, ShrinksSizeAndCapacityTogetherAsFreeExtraDoesAtTheSize) {
    CNuDoubleArray a = Filled({1, 2, 3, 4, 5}, 10);
    a.Truncate(3);
    EXPECT_EQ(a.GetSize(), 3);
    EXPECT_EQ(a.GetCapacity(), 3);
    EXPECT_EQ(a[2], 3.0);
    CNuDoubleArray b = Filled({1, 2}, 6);
    b.Truncate(2);
    EXPECT_EQ(b.GetCapacity(), 2);
    b.Truncate(0);
    EXPECT_EQ(b.GetSize(), 0);
    EXPECT_EQ(b.GetCapacity(), 0);
    EXPECT_EQ(b.GetData(), nullptr);
    CNuDoubleArray c(10);
    c.Truncate(0);  // an empty array with storage gives it up
    EXPECT_EQ(c.GetData(), nullptr);
    CNuDoubleArray e = Filled({7, 8}, 9);
    e.FreeExtra();
    EXPECT_EQ(e.GetCapacity(), 2);
    EXPECT_EQ(e[1], 8.0);
    CNuDoubleArray f(4);
    f.FreeExtra();
    EXPECT_EQ(f.GetCapacity(), 0);
    EXPECT_EQ(f.GetData(), nullptr);
}

TEST(ArrayTruncate, TheAssertFlagTurnsIntegerTruncationIntoNothingAndOnlyThat) {
    const int nSaved = CNuException::m_nAssert;
    CNuIntArray n(8);
    for (int i = 0; i < 5; ++i)
        n.Add(i);
    CNuException::SetAssert();
    n.Truncate(2);
    n.Truncate(-7);  // not even validated
    EXPECT_EQ(n.GetSize(), 5);
    EXPECT_EQ(n.GetCapacity(), 8);
    CNuDoubleArray d = Filled({1, 2, 3}, 3);
    d.Truncate(1);  // other arrays ignore the flag
    EXPECT_EQ(d.GetSize(), 1);
    EXPECT_NU_THROW(d.Truncate(5), Op, 114);
    CNuException::m_nAssert = nSaved;
    n.Truncate(2);
    EXPECT_EQ(n.GetSize(), 2);
}

TEST(ArrayCopy, AssignmentKeepsALargerBufferAndItsStaleTail) {
    CNuDoubleArray big = Filled({9, 9, 9, 9, 9, 9}, 10);
    const double* pBefore = big.GetData();
    CNuDoubleArray small = Filled({1, 2}, 4);
    small.SetExpandSize(3);
    big = small;
    EXPECT_EQ(big.GetCapacity(), 10);
    EXPECT_EQ(big.GetData(), pBefore);
    EXPECT_EQ(big.GetSize(), 2);
    EXPECT_EQ(big.GetExpandSize(), 3);
    EXPECT_EQ(big.GetData()[1], 2.0);
    EXPECT_EQ(big.GetData()[2], 9.0);  // beyond the size, untouched
    // A smaller buffer is replaced by one of the source's capacity.
    CNuDoubleArray tiny = Filled({5}, 1);
    tiny = Filled({1, 2, 3}, 6);
    EXPECT_EQ(tiny.GetCapacity(), 6);
    EXPECT_EQ(tiny[2], 3.0);
    // A source without storage leaves the target's storage with size 0.
    big = CNuDoubleArray();
    EXPECT_EQ(big.GetSize(), 0);
    EXPECT_EQ(big.GetCapacity(), 10);
    // Copy construction takes the source's capacity; self-assignment changes nothing.
    CNuDoubleArray copy(small);
    EXPECT_EQ(copy.GetCapacity(), 4);
    EXPECT_EQ(copy[1], 2.0);
    copy = *&copy;
    EXPECT_EQ(copy.GetSize(), 2);
}

TEST(ArrayElements, RemoveShiftsDownAndClearZeroFillsTheCapacity) {
    CNuDoubleArray a = Filled({1, 2, 3, 4}, 6);
    EXPECT_EQ(a.First(), 1.0);
    EXPECT_EQ(a.Last(), 4.0);
    a.Remove(1);
    EXPECT_EQ(a.GetSize(), 3);
    EXPECT_EQ(a[1], 3.0);
    a.Remove(2);
    EXPECT_EQ(a.GetSize(), 2);
    EXPECT_EQ(a.GetCapacity(), 6);
    a.GetData()[5] = 8.0;
    a.Clear();
    EXPECT_EQ(a.GetSize(), 0);
    EXPECT_EQ(a.GetCapacity(), 6);
    ExpectZerosFrom(a, 0);
    CNuIntArray n(3);
    n.Add(4);
    n.Clear();
    EXPECT_EQ(n.GetData()[0], 0);
}

TEST(ArraySubArray, TakesAnInclusiveRangeOrAMaskWithItsOwnCapacityAndStep) {
    CNuDoubleArray a(0, 4);
    for (int i = 0; i < 6; ++i)
        a.Add(i * 1.5);
    CNuDoubleArray s = a.SubArray(1, 3);
    EXPECT_EQ(s.GetSize(), 3);
    EXPECT_EQ(s.GetCapacity(), 3);
    EXPECT_EQ(s.GetExpandSize(), 4);
    EXPECT_EQ(s[0], 1.5);
    EXPECT_EQ(s[2], 4.5);
    EXPECT_EQ(Ints({3, 4}).SubArray(1, 1)[0], 4);
    // A mask selects elements and its sum is the capacity.
    CNuDoubleArray m = Filled({10, 20, 30, 40}).SubArray(Ints({1, 0, 1, 1}));
    EXPECT_EQ(m.GetSize(), 3);
    EXPECT_EQ(m.GetCapacity(), 3);
    EXPECT_EQ(m[1], 30.0);
}

TEST(ArraySearch, FindUsesAStrictToleranceAndFindsNothingInAnEmptyArray) {
    CNuDoubleArray a = Filled({1.0, 2.0, 2.05, 3.0});
    EXPECT_EQ(a.Find(2.04, 0.02), 2);
    EXPECT_EQ(a.Find(2.04, 0.05), 1);
    EXPECT_EQ(a.Find(1.5, 0.5), -1);  // distances equal to the tolerance do not count
    EXPECT_EQ(CNuDoubleArray().Find(0.0, 1.0), -1);
    CNuIntArray n = Ints({5, 7, 7});
    EXPECT_EQ(n.Find(7), 1);
    EXPECT_EQ(n.Find(6), -1);
}

TEST(ArraySearch, MaxAndMinSearchOnlyWithinTheLargeTolerance) {
    CNuDoubleArray a = Filled({3.0, -8.0, 5.0, -1.0});
    EXPECT_EQ(a.Max(), 5.0);
    EXPECT_EQ(a.Min(), -8.0);
    const double dSaved = NuGetLarge();
    NuSetLarge(2.0);
    EXPECT_EQ(a.Max(), 5.0);
    EXPECT_EQ(Filled({-7.0, -9.0}).Max(), -2.0);  // nothing beyond the start is found
    EXPECT_EQ(Filled({7.0}).Min(), 2.0);
    NuSetLarge(dSaved);
}

TEST(ArrayPredicates, EqualityAndMonotonyFollowTheirStrictTests) {
    CNuDoubleArray a = Filled({1.0, 2.0});
    CNuDoubleArray b = Filled({1.0, 2.25}, 7);
    EXPECT_EQ(a.IsEqual(b, 0.25), eNuFalse);
    EXPECT_EQ(a.IsEqual(b, 0.3), eNuTrue);
    EXPECT_EQ(a.IsEqual(Filled({1.0}), 10.0), eNuFalse);
    EXPECT_EQ(CNuDoubleArray().IsEqual(CNuDoubleArray(3), 0.0), eNuTrue);
    EXPECT_EQ(CNuIntArray().IsEqual(CNuIntArray()), eNuTrue);
    EXPECT_EQ(Ints({1}).IsEqual(Ints({2})), eNuFalse);
    EXPECT_EQ(Filled({1, 1, 2}).IsMonotonicIncreasing(), eNuTrue);
    EXPECT_EQ(Filled({1, 1, 2}).IsStrictlyIncreasing(), eNuFalse);
    EXPECT_EQ(Filled({1, 3, 2}).IsMonotonicIncreasing(), eNuFalse);
    EXPECT_EQ(Filled({4}).IsStrictlyIncreasing(), eNuTrue);
}

TEST(ArraySort, SortsInPlaceAndBuildsStableIndexPermutations) {
    CNuDoubleArray a = Filled({3.0, 1.0, 2.0, 1.0});
    CNuIntArray index(20);
    a.Sort(&index);
    EXPECT_EQ(a[0], 3.0);  // the array stays
    EXPECT_EQ(Elements(index), (std::vector<int>{1, 3, 2, 0}));
    EXPECT_EQ(index.GetCapacity(), 20);  // assigned into, so its larger buffer stays
    a.Sort();
    EXPECT_EQ(a[0], 1.0);
    EXPECT_EQ(a[3], 3.0);

    CNuIntArray n = Ints({5, -2, 5, 0});
    CNuIntArray nIndex;
    n.Sort(&nIndex);
    EXPECT_EQ(Elements(nIndex), (std::vector<int>{1, 3, 0, 2}));
    n.Sort();
    EXPECT_EQ(Elements(n), (std::vector<int>{-2, 0, 5, 5}));
    EXPECT_EQ(n.Sum(), 8);
    EXPECT_EQ(Filled({0.5, 0.25}).Sum(), 0.75);
}

struct Tracked : CNuAlgebra {
    explicit Tracked(int* pnAlive) : m_pnAlive(pnAlive) { ++*m_pnAlive; }
    ~Tracked() override { --*m_pnAlive; }
    int* m_pnAlive;
};

TEST(ObjArray, BorrowsItsObjectsAndReleasesOnlyThePointerBlock) {
    int nAlive = 0;
    Tracked first(&nAlive);
    Tracked second(&nAlive);
    {
        CNuObjArray a(1);
        EXPECT_EQ(a.GetData()[0], nullptr);  // new slots are null
        a.Add(&first);
        a.Add(&second);
        CNuObjArray b(a);
        EXPECT_EQ(b[0], &first);
        EXPECT_EQ(b.Last(), &second);
        b.Clear();
        EXPECT_EQ(b.GetSize(), 0);
        EXPECT_EQ(b.GetData()[1], &second);  // Clear keeps the pointer block as it was
        a.Truncate(1);
        EXPECT_EQ(a.GetCapacity(), 1);
    }
    EXPECT_EQ(nAlive, 2);
}

}  // namespace
}  // namespace numorix
