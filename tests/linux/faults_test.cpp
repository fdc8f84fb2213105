// What a conversion does when the system fails it: each allocation, each operation on a file and each call of
// Excel fails in turn. Until the document is written, the output is as it was and there is a message;
// whatever fails, nothing is left open, and the next conversion works.
#include <dlfcn.h>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <link.h>
#include <malloc.h>
#include <sys/stat.h>

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <functional>
#include <new>

#include "api/xls2tki_c.h"
#include "tests/driver_manager.h"
#include "tests/recording_server.h"

namespace {

// Lets one of the operations that come fail, or that one and all behind it.
class Fault {
  public:
    void Begin(int number, bool lasts) {
        left_ = number;
        lasts_ = lasts;
        struck_ = false;
    }
    // Whether the operation was reached.
    bool End() {
        left_ = 0;
        return struck_;
    }
    bool Strikes() {
        if (left_ == 0 || --left_ > 0) return false;
        struck_ = true;
        left_ = lasts_ ? 1 : 0;
        return true;
    }

  private:
    int left_ = 0;  // 0: none fails
    bool lasts_ = false;
    bool struck_ = false;
};

constinit Fault allocation;
constinit Fault reading;
constinit Fault writing;
constinit bool isShrunk = false;  // how reading fails: there is nothing any more

// The driver manager does not look at what it is given.
bool IsDriverManager(void* caller) {
    dl_find_object object{};
    return _dl_find_object(caller, &object) == 0 &&
           std::strstr(object.dlfo_link_map->l_name, "libodbc") != nullptr;
}

bool FailsToAllocate(void* caller) {
    if (IsDriverManager(caller) || !allocation.Strikes()) return false;
    errno = ENOMEM;
    return true;
}

int FailWith(int reason) {
    errno = reason;
    return -1;
}

}  // namespace

// The functions that take the place of the system's: those of memory in the whole program, where no sanitizer
// has done the same before, else in what is linked into the test; those of files in the latter only.
// NOLINTBEGIN(bugprone-reserved-identifier, readability-inconsistent-declaration-parameter-name)
#if defined(XLS2TKI_SANITIZED)
#define OURS(name) __wrap_##name
#define SYSTEM(name) __real_##name
#else
#define OURS(name) name
#define SYSTEM(name) __libc_##name
#endif

extern "C" {

void* SYSTEM(malloc)(std::size_t size);
void* SYSTEM(calloc)(std::size_t count, std::size_t size);
void* SYSTEM(realloc)(void* block, std::size_t size);
int __real_open(const char* path, int flags, ...);
int __real_fstat(int file, struct stat* status);
ssize_t __real_pread(int file, void* bytes, std::size_t count, off_t offset);
int __real_ftruncate(int file, off_t size);
ssize_t __real_write(int file, const void* bytes, std::size_t count);

void* OURS(malloc)(std::size_t size) {
    return FailsToAllocate(__builtin_return_address(0)) ? nullptr : SYSTEM(malloc)(size);
}

void* OURS(calloc)(std::size_t count, std::size_t size) {
    return FailsToAllocate(__builtin_return_address(0)) ? nullptr : SYSTEM(calloc)(count, size);
}

void* OURS(realloc)(void* block, std::size_t size) {
    return FailsToAllocate(__builtin_return_address(0)) ? nullptr : SYSTEM(realloc)(block, size);
}

int __wrap_open(const char* path, int flags, mode_t mode) {
    Fault& fault = (flags & O_WRONLY) != 0 ? writing : reading;
    return fault.Strikes() ? FailWith(EACCES) : __real_open(path, flags, mode);
}

int __wrap_fstat(int file, struct stat* status) {
    return reading.Strikes() ? FailWith(EIO) : __real_fstat(file, status);
}

ssize_t __wrap_pread(int file, void* bytes, std::size_t count, off_t offset) {
    if (!reading.Strikes()) return __real_pread(file, bytes, count, offset);
    return isShrunk ? 0 : FailWith(EIO);
}

int __wrap_ftruncate(int file, off_t size) {
    return writing.Strikes() ? FailWith(EIO) : __real_ftruncate(file, size);
}

ssize_t __wrap_write(int file, const void* bytes, std::size_t count) {
    return writing.Strikes() ? FailWith(ENOSPC) : __real_write(file, bytes, count);
}

}  // extern "C"
// NOLINTEND(bugprone-reserved-identifier, readability-inconsistent-declaration-parameter-name)

#if defined(XLS2TKI_SANITIZED)
void* operator new(std::size_t size) {
    void* const block = __wrap_malloc(size);
    if (block == nullptr) throw std::bad_alloc();
    return block;
}
void* operator new(std::size_t size, const std::nothrow_t&) noexcept { return __wrap_malloc(size); }
void operator delete(void* block) noexcept { std::free(block); }
void operator delete(void* block, std::size_t) noexcept { std::free(block); }
void operator delete(void* block, const std::nothrow_t&) noexcept { std::free(block); }
#endif

namespace {

constexpr auto kBefore = "as it was";
const std::filesystem::path kExamples = XLS2TKI_TEST_DATA "/../../examples";
const std::string kDocument = NTest::ReadBytes(kExamples / "powertrain.xml");

struct Kind {
    const char* name;
    int importType;
    const char* input;
};

void PrintTo(const Kind& kind, std::ostream* stream) { *stream << kind.name; }

const Kind kCsv = {"Csv", XLS2TKI_CSV, "powertrain.csv"};
const Kind kExcel = {"Excel", XLS2TKI_EXCEL, "powertrain.xlsx"};
const Kind kOdbc = {"Odbc", XLS2TKI_ODBC, "powertrain.xlsx"};

// One for all tests: the driver manager looks for its configuration once.
const NTest::DriverManager driverManager;

class Conversions : public testing::Test {
  protected:
    Conversions() { driverManager.PutDrivers("[Excel]\nDriver=" XLS2TKI_TEST_OWN_ODBC_DRIVER "\n"); }
    ~Conversions() override { EXPECT_EQ(OpenFiles(), openBefore_); }

    bool Convert(int importType, const std::u16string& input) {
        Xls2TkiConversion conversion{};
        conversion.size = sizeof conversion;
        conversion.inputPath = input.c_str();
        conversion.outputPath = output_.c_str();
        conversion.importType = importType;
        conversion.separator = u';';
        conversion.forwardMessages = true;
        return xls2tki_convert(&conversion);
    }
    static std::ptrdiff_t OpenFiles() {
        return std::distance(std::filesystem::directory_iterator("/proc/self/fd"), {});
    }

    NTest::TempFolder folder_;
    std::u16string output_ = folder_.Path("output");

  private:
    std::ptrdiff_t openBefore_ = OpenFiles();
};

class Faults : public Conversions, public testing::WithParamInterface<Kind> {
  protected:
    // Fails the first operation, then the second, until a conversion is done without. `check` is told whether
    // a conversion said that it is done.
    template <typename Check>
    void FailEach(Fault& fault, bool lasts, Check check) {
        ExpectConversion();
        int number = 0;
        for (bool isReached = true; isReached && !HasFailure();) {
            SCOPED_TRACE(++number);
            folder_.Put("output", kBefore);
            fault.Begin(number, lasts);
            const bool isDone = Convert(GetParam().importType, input_);
            isReached = fault.End();
            EXPECT_TRUE(isDone || isReached);
            EXPECT_NE(*xls2tki_message(), 0);
            check(isDone);
            ExpectConversion();
        }
        EXPECT_GT(number, 3);
        std::printf("%d calls failed in turn.\n", number - 1);
    }

    void FailEach(Fault& fault, bool lasts) {
        FailEach(fault, lasts,
                 [this](bool isDone) { EXPECT_EQ(folder_.Read("output"), isDone ? kDocument : kBefore); });
    }

  private:
    void ExpectConversion() {
        EXPECT_TRUE(Convert(GetParam().importType, input_)) << NTest::Utf8(xls2tki_message());
        EXPECT_EQ(folder_.Read("output"), kDocument);
    }

    std::u16string input_ = (kExamples / GetParam().input).u16string();
};

TEST_P(Faults, OfMemoryLeaveTheOutputWhole) {
    FailEach(allocation, false);
    if (GetParam().importType != XLS2TKI_ODBC) FailEach(allocation, true);  // there it takes too long
}

INSTANTIATE_TEST_SUITE_P(Kinds, Faults, testing::Values(kCsv, kExcel, kOdbc),
                         testing::PrintToStringParamName());

// What reads workbooks through ODBC is a library of its own, whose operations do not pass here.
class FileFaults : public Faults {};

TEST_P(FileFaults, OfReadingLeaveTheOutputWhole) {
    for (const bool shrinks : {false, true}) {
        isShrunk = shrinks;
        FailEach(reading, false);
        FailEach(reading, true);
    }
}

// Whether the output could be written is not part of the result.
TEST_P(FileFaults, OfWritingAreForTheHostToSee) {
    FailEach(writing, false, [this](bool isDone) {
        EXPECT_TRUE(isDone);
        const std::string written = folder_.Read("output");
        EXPECT_TRUE(written == kBefore || kDocument.starts_with(written)) << written;
    });
}

INSTANTIATE_TEST_SUITE_P(Kinds, FileFaults, testing::Values(kCsv, kExcel), testing::PrintToStringParamName());

TEST_F(Conversions, LeaveTheOutputWholeWhenACallOfExcelFails) {
    NTest::RecordingExcel excel(
        {{u"One", NTest::MakeCells(NTest::MakeTable(u"DTC|Text\nP0001|first"), NTest::MakeCell)}});
    const std::u16string input = folder_.Put("input", "");
    const auto run = [&](int failAt) {
        folder_.Put("output", kBefore);
        excel.Begin(failAt);
        const bool isDone = Convert(XLS2TKI_EXCEL, input);
        EXPECT_EQ(folder_.Read("output").find("first") != std::string::npos, isDone);
        EXPECT_TRUE(isDone || folder_.Read("output") == kBefore);
        EXPECT_EQ(excel.liveObjects, 0);
        return isDone;
    };
    ASSERT_TRUE(run(0));
    std::istringstream lines(excel.Trace());
    int calls = 0;
    for (std::string line; std::getline(lines, line);) calls += line[0] != '~';
    int failures = 0;
    for (int number = 1; number <= calls; ++number) failures += !run(number);
    EXPECT_GT(failures, 10);
    std::printf("%d calls failed in turn, %d conversions with them.\n", calls, failures);
    EXPECT_FALSE(run(2));
    EXPECT_EQ(std::u16string(xls2tki_message()), u"Broken");
    EXPECT_TRUE(run(0));
}

class LongRun : public Conversions {
  protected:
    struct Input {
        int importType;
        std::u16string path;
        bool isGood;
    };

    // Converts the inputs again and again. Once it has settled, no conversion may leave more memory behind
    // than so many bytes. XLS2TKI_TEST_CONVERSIONS sets how many there are; the default is for every day.
    void Repeat(const std::vector<Input>& inputs, double mostBytes) {
        const char* const given = std::getenv("XLS2TKI_TEST_CONVERSIONS");
        const std::size_t rounds = (given == nullptr ? 400 : std::stoul(given)) / inputs.size();
        const std::size_t settling = rounds / 4;
        std::size_t before = 0;
        for (std::size_t round = 0; round < rounds && !HasFailure(); ++round) {
            if (round == settling) before = mallinfo2().uordblks;
            for (const Input& input : inputs) EXPECT_EQ(Convert(input.importType, input.path), input.isGood);
        }
        const std::size_t after = mallinfo2().uordblks;
        std::printf("Memory in use: %zu bytes, at the end %zu.\n", before, after);
        const auto count = static_cast<double>((rounds - settling) * inputs.size());
        constexpr double kAtHand = 4000;  // what was freed and the allocator keeps to use again
        EXPECT_LE(static_cast<double>(after) - static_cast<double>(before), kAtHand + mostBytes * count);
    }

    std::u16string csv_ = (kExamples / kCsv.input).u16string();
    std::u16string workbook_ = (kExamples / kExcel.input).u16string();
    std::u16string wrong_ = folder_.Put("wrong", "DTC;Text\n1\n");
    std::u16string missing_ = folder_.Path("missing");
};

TEST_F(LongRun, KeepsMemoryAndHandlesFlat) {
    Repeat({{XLS2TKI_CSV, csv_, true},
            {XLS2TKI_CSV, wrong_, false},
            {XLS2TKI_EXCEL, workbook_, true},
            {XLS2TKI_EXCEL, wrong_, false},
            {XLS2TKI_CSV, missing_, false},
            {XLS2TKI_EXCEL, missing_, false}},
           0);
}

// The driver manager forgets a few bytes of each connect string that has both DRIVER and DSN.
TEST_F(LongRun, KeepsAlmostFlatThroughOdbc) {
    Repeat({{XLS2TKI_ODBC, workbook_, true}, {XLS2TKI_ODBC, wrong_, false}, {XLS2TKI_ODBC, missing_, false}},
           150);
}

}  // namespace
