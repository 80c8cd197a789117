// Growable arrays: capacity semantics, growth, truncation, copying, and every refusal with its
// stored cause, name and location.
#include <vector>

#include "nu_test.h"
#include "numorix/foundation/double_array.h"
#include "numorix/foundation/int_array.h"
#include "numorix/foundation/obj_array.h"
#include "numorix/foundation/tolerance.h"

namespace numorix {
namespace {

using test::ExpectNuFailure;

CNuDoubleArray Filled(std::initializer_list<double> values, int nCapacity) {
    CNuDoubleArray a(nCapacity);
    for (double d : values)
        a.Add(d);
    return a;
}

TEST(ArrayCapacity, TheConstructorSizeIsACapacityOfZeros) {
    CNuDoubleArray a(5);
    EXPECT_EQ(a.GetSize(), 0);
    EXPECT_EQ(a.GetCapacity(), 5);
    EXPECT_EQ(a.GetExpandSize(), 10);
    for (int i = 0; i < 5; ++i)
        EXPECT_EQ(a.GetData()[i], 0.0);
    ExpectNuFailure<CNuOperationException>([&] { a[0]; }, 108, "element operator[]",
                                           "CNuDoubleArray");
    CNuDoubleArray empty;
    EXPECT_EQ(empty.GetData(), nullptr);
    EXPECT_EQ(empty.GetCapacity(), 0);
}

TEST(ArrayCapacity, ConstructorsRefuseNegativeSizesBeforeBadSteps) {
    ExpectNuFailure<CNuConstructionException>([] { CNuDoubleArray a(-1); }, 2, "size",
                                              "CNuDoubleArray");
    ExpectNuFailure<CNuConstructionException>([] { CNuDoubleArray a(-1, 0); }, 2, "size",
                                              "CNuDoubleArray");
    ExpectNuFailure<CNuConstructionException>([] { CNuDoubleArray a(3, 0); }, 15,
                                              "nArrayExpandSize", "CNuDoubleArray");
    ExpectNuFailure<CNuConstructionException>([] { CNuIntArray a(-2); }, 2, "size", "CNuIntArray");
    ExpectNuFailure<CNuConstructionException>([] { CNuIntArray a(0, -3); }, 15, "nArrayExpandSize",
                                              "CNuIntArray");
    ExpectNuFailure<CNuConstructionException>([] { CNuObjArray a(-2); }, 2, "size", "CNuObjArray");
    ExpectNuFailure<CNuConstructionException>([] { CNuObjArray a(-2, 5); }, 2, "Size",
                                              "CNuObjArray");
}

TEST(ArrayGrowth, AddGrowsByTheConstantStepNeverByDoubling) {
    CNuDoubleArray a;
    a.Add(1.0);
    EXPECT_EQ(a.GetCapacity(), 10);
    EXPECT_EQ(a.GetSize(), 1);
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
    b.Add(6);
    b.Add(7);
    b.Add(8);
    EXPECT_EQ(b.GetCapacity(), 9);
}

TEST(ArrayGrowth, AppendGrowsToExactlyTheNeededSizeAndRefusesItself) {
    CNuDoubleArray a = Filled({1, 2, 3}, 3);
    CNuDoubleArray b = Filled({4, 5}, 0);
    a.Append(b);
    EXPECT_EQ(a.GetCapacity(), 5);
    EXPECT_EQ(a.GetSize(), 5);
    EXPECT_EQ(a[4], 5.0);
    CNuDoubleArray c;
    CNuDoubleArray d;
    c.Append(d);
    EXPECT_EQ(c.GetCapacity(), 0);
    EXPECT_EQ(c.GetData(), nullptr);
    ExpectNuFailure<CNuOperationException>([&] { a.Append(a); }, 118, "Append operation",
                                           "CNuDoubleArray::Append()");
    CNuIntArray n;
    ExpectNuFailure<CNuOperationException>([&] { n.Append(n); }, 118, "Append operation",
                                           "CNuIntArray::Append()");
    CNuObjArray o;
    ExpectNuFailure<CNuOperationException>([&] { o.Append(o); }, 118, "Append operation",
                                           "CNuObjArray::Append()");
}

TEST(ArrayCapacity, SetCapacityOnlyGrowsAndRefusesTheCurrentCapacity) {
    CNuDoubleArray a = Filled({1, 2}, 4);
    ExpectNuFailure<CNuOperationException>([&] { a.SetCapacity(4); }, 114, "SetSize operation",
                                           "CNuDoubleArray::SetSize()");
    ExpectNuFailure<CNuOperationException>([&] { a.SetSize(3); }, 114, "SetSize operation",
                                           "CNuDoubleArray::SetSize()");
    ExpectNuFailure<CNuOperationException>([&] { a.SetCapacity(-1); }, 114, nullptr, nullptr);
    CNuDoubleArray fresh;
    EXPECT_NU_THROW(fresh.SetSize(0), CNuOperationException, 114);
    a.SetSize(7);
    EXPECT_EQ(a.GetSize(), 2);  // SetSize changes the capacity, not the size
    EXPECT_EQ(a.GetCapacity(), 7);
    EXPECT_EQ(a[1], 2.0);
    for (int i = 2; i < 7; ++i)
        EXPECT_EQ(a.GetData()[i], 0.0);
    CNuIntArray n(3);
    ExpectNuFailure<CNuOperationException>([&] { n.SetCapacity(3); }, 114, "SetSize operation",
                                           "CNuIntArray::SetSize(int NewSize)");
    ExpectNuFailure<CNuOperationException>([&] { n.SetExpandSize(0); }, 114,
                                           "SetExpandSize operation",
                                           "CNuIntArray::SetExpandSize(int NewXSize)");
    ExpectNuFailure<CNuOperationException>([&] { a.SetExpandSize(0); }, 114,
                                           "SetExpandSize operation",
                                           "CNuDoubleArray::SetExpandSize()");
    CNuObjArray o;
    ExpectNuFailure<CNuOperationException>([&] { o.SetSize(0); }, 114, "SetSize operation",
                                           "CNuObjArray::SetSize()");
    ExpectNuFailure<CNuOperationException>([&] { o.SetExpandSize(-4); }, 114,
                                           "SetExpandSize operation",
                                           "CNuObjArray::SetExpandSize()");
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
    for (int i = 4; i < 13; ++i)
        EXPECT_EQ(a.GetData()[i], 0.0) << "index " << i;
    CNuIntArray n(4);
    for (int v : {7, 8, 9, 10})
        n.Add(v);
    n.Remove(0);
    n.Remove(0);
    n.SetCapacity(6);
    EXPECT_EQ(n[1], 10);
    for (int i = 2; i < 6; ++i)
        EXPECT_EQ(n.GetData()[i], 0) << "index " << i;
    n.Truncate(1);
    EXPECT_EQ(n[0], 9);
    EXPECT_EQ(n.GetCapacity(), 1);
}

TEST(ArrayTruncate, ShrinksSizeAndCapacityTogether) {
    CNuDoubleArray a = Filled({1, 2, 3, 4, 5}, 10);
    a.Truncate(3);
    EXPECT_EQ(a.GetSize(), 3);
    EXPECT_EQ(a.GetCapacity(), 3);
    EXPECT_EQ(a[2], 3.0);
    // At the size it frees the spare room, as FreeExtra does.
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
}

TEST(ArrayTruncate, RefusesSizesOutsideZeroToTheSizeWithTheValidRange) {
    CNuDoubleArray a = Filled({1, 2, 3, 4, 5}, 10);
    try {
        a.Truncate(6);
        ADD_FAILURE() << "Truncate(6) of five elements did not throw";
    } catch (const CNuOperationException& e) {
        EXPECT_EQ(e.m_nCause, 114);
        EXPECT_STREQ(e.m_szName, "Truncate operation");
        EXPECT_STREQ(e.m_szLocation, "CNuDoubleArray::Truncate(int Size)");
        EXPECT_EQ(e.m_nValue1, 0);
        EXPECT_EQ(e.m_nValue2, 4);
    }
    EXPECT_NU_THROW(a.Truncate(-1), CNuOperationException, 114);
    CNuIntArray n;
    ExpectNuFailure<CNuOperationException>([&] { n.Truncate(1); }, 114, "Truncate operation",
                                           "CNuIntArray::Truncate(int Size)");
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
    EXPECT_NU_THROW(d.Truncate(5), CNuOperationException, 114);
    CNuException::m_nAssert = nSaved;
    n.Truncate(2);
    EXPECT_EQ(n.GetSize(), 2);
}

TEST(ArrayCapacity, FreeExtraShrinksTheCapacityToTheSize) {
    CNuDoubleArray a = Filled({7, 8}, 9);
    a.FreeExtra();
    EXPECT_EQ(a.GetCapacity(), 2);
    EXPECT_EQ(a[1], 8.0);
    CNuDoubleArray b(4);
    b.FreeExtra();
    EXPECT_EQ(b.GetCapacity(), 0);
    EXPECT_EQ(b.GetData(), nullptr);
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
    CNuDoubleArray none;
    big = none;
    EXPECT_EQ(big.GetSize(), 0);
    EXPECT_EQ(big.GetCapacity(), 10);
    // Copy construction takes the source's capacity; self-assignment changes nothing.
    CNuDoubleArray copy(small);
    EXPECT_EQ(copy.GetCapacity(), 4);
    EXPECT_EQ(copy[1], 2.0);
    copy = *&copy;
    EXPECT_EQ(copy.GetSize(), 2);
}

TEST(ArrayElements, IndexFirstAndLastFailuresNameTheirArray) {
    CNuDoubleArray a = Filled({1, 2, 3}, 0);
    EXPECT_EQ(a.First(), 1.0);
    EXPECT_EQ(a.Last(), 3.0);
    try {
        a[3];
        ADD_FAILURE() << "a[3] of three elements did not throw";
    } catch (const CNuOperationException& e) {
        EXPECT_EQ(e.m_nCause, 103);
        EXPECT_EQ(e.m_nValue1, 0);
        EXPECT_EQ(e.m_nValue2, 2);
        EXPECT_STREQ(e.m_szLocation, "CNuDoubleArray");
    }
    EXPECT_NU_THROW(a[-1], CNuOperationException, 103);
    CNuDoubleArray e;
    // The double array's First and Last name CNuIntArray: the texts stay as they are.
    ExpectNuFailure<CNuOperationException>([&] { e.First(); }, 108, "First operator[]",
                                           "CNuIntArray::First()");
    ExpectNuFailure<CNuOperationException>([&] { e.Last(); }, 108, "Last operator[]",
                                           "CNuIntArray::Last()");
    CNuIntArray n;
    ExpectNuFailure<CNuOperationException>([&] { n.Last(); }, 108, "Last operator[]",
                                           "CNuIntArray::Last()");
    ExpectNuFailure<CNuOperationException>([&] { n[0]; }, 108, "element operator[]", "CNuIntArray");
    CNuObjArray o;
    ExpectNuFailure<CNuOperationException>([&] { o.First(); }, 108, "First operator[]",
                                           "CNuObjArray::First()");
    ExpectNuFailure<CNuOperationException>([&] { o.Last(); }, 108, "Last operator[]",
                                           "CNuObjArray::Last()");
    ExpectNuFailure<CNuOperationException>([&] { o[0]; }, 108, "element operator[]", "CNuObjArray");
}

TEST(ArrayElements, RemoveShiftsDownAndKeepsTheCapacity) {
    CNuDoubleArray a = Filled({1, 2, 3, 4}, 6);
    a.Remove(1);
    EXPECT_EQ(a.GetSize(), 3);
    EXPECT_EQ(a[1], 3.0);
    a.Remove(2);
    EXPECT_EQ(a.GetSize(), 2);
    EXPECT_EQ(a.GetCapacity(), 6);
    ExpectNuFailure<CNuOperationException>([&] { a.Remove(2); }, 103, "Remove operation",
                                           "CNuDoubleArray::Remove()");
    CNuIntArray n;
    ExpectNuFailure<CNuOperationException>([&] { n.Remove(0); }, 108, "Remove operation",
                                           "CNuIntArray::Remove()");
}

TEST(ArrayElements, ClearZeroFillsTheWholeCapacityOfNumericArrays) {
    CNuDoubleArray a = Filled({1, 2, 3}, 5);
    a.GetData()[4] = 8.0;
    a.Clear();
    EXPECT_EQ(a.GetSize(), 0);
    EXPECT_EQ(a.GetCapacity(), 5);
    for (int i = 0; i < 5; ++i)
        EXPECT_EQ(a.GetData()[i], 0.0);
    CNuIntArray n(3);
    n.Add(4);
    n.Clear();
    EXPECT_EQ(n.GetData()[0], 0);
}

TEST(ArraySubArray, TakesAnInclusiveRangeWithItsOwnCapacityAndStep) {
    CNuDoubleArray a(0, 4);
    for (int i = 0; i < 6; ++i)
        a.Add(i * 1.5);
    CNuDoubleArray s = a.SubArray(1, 3);
    EXPECT_EQ(s.GetSize(), 3);
    EXPECT_EQ(s.GetCapacity(), 3);
    EXPECT_EQ(s.GetExpandSize(), 4);
    EXPECT_EQ(s[0], 1.5);
    EXPECT_EQ(s[2], 4.5);
    const char* pszLocation = "CNuDoubleArray::SubArray(i, j)";
    ExpectNuFailure<CNuOperationException>([&] { a.SubArray(-1, 2); }, 103, "SubArray operation",
                                           pszLocation);
    ExpectNuFailure<CNuOperationException>([&] { a.SubArray(0, 6); }, 103, "SubArray operation",
                                           pszLocation);
    // The order test comes after the range test, which does not bound i from above.
    ExpectNuFailure<CNuOperationException>([&] { a.SubArray(9, 2); }, 115, "SubArray operation",
                                           pszLocation);
    CNuIntArray n;
    n.Add(3);
    n.Add(4);
    EXPECT_EQ(n.SubArray(1, 1)[0], 4);
    ExpectNuFailure<CNuOperationException>([&] { n.SubArray(1, 0); }, 115, "SubArray operation",
                                           "CNuIntArray::SubArray(i, j)");
}

TEST(ArraySubArray, AMaskSelectsElementsAndItsSumIsTheCapacity) {
    CNuDoubleArray a = Filled({10, 20, 30, 40}, 0);
    CNuIntArray mask;
    for (int m : {1, 0, 1, 1})
        mask.Add(m);
    CNuDoubleArray s = a.SubArray(mask);
    EXPECT_EQ(s.GetSize(), 3);
    EXPECT_EQ(s.GetCapacity(), 3);
    EXPECT_EQ(s[1], 30.0);
    mask.Remove(0);
    ExpectNuFailure<CNuOperationException>([&] { a.SubArray(mask); }, 105, "SubArray operation",
                                           "CNuDoubleArray::SubArray(const CNuIntArray& ip)");
}

TEST(ArraySearch, FindUsesAStrictToleranceAndFindsNothingInAnEmptyArray) {
    CNuDoubleArray a = Filled({1.0, 2.0, 2.05, 3.0}, 0);
    EXPECT_EQ(a.Find(2.04, 0.02), 2);
    EXPECT_EQ(a.Find(2.04, 0.05), 1);
    EXPECT_EQ(a.Find(1.5, 0.5), -1);  // distances equal to the tolerance do not count
    EXPECT_EQ(CNuDoubleArray().Find(0.0, 1.0), -1);
    CNuIntArray n;
    n.Add(5);
    n.Add(7);
    n.Add(7);
    EXPECT_EQ(n.Find(7), 1);
    EXPECT_EQ(n.Find(6), -1);
}

TEST(ArraySearch, MaxAndMinSearchOnlyWithinTheLargeTolerance) {
    CNuDoubleArray a = Filled({3.0, -8.0, 5.0, -1.0}, 0);
    EXPECT_EQ(a.Max(), 5.0);
    EXPECT_EQ(a.Min(), -8.0);
    ExpectNuFailure<CNuOperationException>([] { CNuDoubleArray().Max(); }, 108, "Max operation",
                                           "CNuDoubleArray::Max()");
    ExpectNuFailure<CNuOperationException>([] { CNuDoubleArray().Min(); }, 108, "Min operation",
                                           "CNuDoubleArray::Min()");
    const double dSaved = NuGetLarge();
    NuSetLarge(2.0);
    EXPECT_EQ(a.Max(), 5.0);
    CNuDoubleArray b = Filled({-7.0, -9.0}, 0);
    EXPECT_EQ(b.Max(), -2.0);  // nothing beyond the start is found
    EXPECT_EQ(Filled({7.0}, 0).Min(), 2.0);
    NuSetLarge(dSaved);
}

TEST(ArrayPredicates, EqualityAndMonotonyFollowTheirStrictTests) {
    CNuDoubleArray a = Filled({1.0, 2.0}, 0);
    CNuDoubleArray b = Filled({1.0, 2.25}, 7);
    EXPECT_EQ(a.IsEqual(b, 0.25), eNuFalse);
    EXPECT_EQ(a.IsEqual(b, 0.3), eNuTrue);
    EXPECT_EQ(a.IsEqual(Filled({1.0}, 0), 10.0), eNuFalse);
    EXPECT_EQ(CNuDoubleArray().IsEqual(CNuDoubleArray(3), 0.0), eNuTrue);
    CNuIntArray m;
    CNuIntArray n;
    EXPECT_EQ(m.IsEqual(n), eNuTrue);
    m.Add(1);
    n.Add(2);
    EXPECT_EQ(m.IsEqual(n), eNuFalse);

    EXPECT_EQ(Filled({1, 1, 2}, 0).IsMonotonicIncreasing(), eNuTrue);
    EXPECT_EQ(Filled({1, 1, 2}, 0).IsStrictlyIncreasing(), eNuFalse);
    EXPECT_EQ(Filled({1, 3, 2}, 0).IsMonotonicIncreasing(), eNuFalse);
    EXPECT_EQ(Filled({4}, 0).IsStrictlyIncreasing(), eNuTrue);
    ExpectNuFailure<CNuOperationException>([] { CNuDoubleArray().IsMonotonicIncreasing(); }, 108,
                                           "IsMonotonicIncreasing operation",
                                           "CNuDoubleArray::IsMonotonicIncreasing()");
    ExpectNuFailure<CNuOperationException>([] { CNuDoubleArray().IsStrictlyIncreasing(); }, 108,
                                           "IsStrictlyIncreasing operation",
                                           "CNuDoubleArray::IsStrictlyIncreasing()");
}

TEST(ArraySort, SortsInPlaceAndBuildsStableIndexPermutations) {
    CNuDoubleArray a = Filled({3.0, 1.0, 2.0, 1.0}, 0);
    CNuIntArray index(20);
    a.Sort(&index);
    EXPECT_EQ(a[0], 3.0);  // the array stays
    std::vector<int> seen;
    for (int i = 0; i < index.GetSize(); ++i)
        seen.push_back(index[i]);
    EXPECT_EQ(seen, (std::vector<int>{1, 3, 2, 0}));
    EXPECT_EQ(index.GetCapacity(), 20);  // assigned into, so its larger buffer stays
    a.Sort();
    EXPECT_EQ(a[0], 1.0);
    EXPECT_EQ(a[3], 3.0);

    CNuIntArray n;
    for (int v : {5, -2, 5, 0})
        n.Add(v);
    CNuIntArray nIndex;
    n.Sort(&nIndex);
    seen.clear();
    for (int i = 0; i < nIndex.GetSize(); ++i)
        seen.push_back(nIndex[i]);
    EXPECT_EQ(seen, (std::vector<int>{1, 3, 0, 2}));
    n.Sort();
    EXPECT_EQ(n[0], -2);
    EXPECT_EQ(n[3], 5);
    EXPECT_EQ(n.Sum(), 8);
    EXPECT_EQ(Filled({0.5, 0.25}, 0).Sum(), 0.75);
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
