// What a conversion does when the system fails it: each allocation, each operation on a file and each call of
// the ODBC driver manager fails in turn. Until the document is written, the output is as it was and there is
// a message; whatever fails, nothing is left open, and the next conversion works. So it is for the command.
#include <dlfcn.h>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <link.h>
#include <malloc.h>
#include <pwd.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <functional>
#include <new>

#include "api/xls2tki.h"
#include "api/xls2tki_c.h"
#include "cli/command.h"
#include "cli/failure.h"
#include "odbc_driver/odbc.h"
#include "tests/driver_manager.h"

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
constinit Fault streaming;        // by the C library's files
constinit Fault asking;           // the driver manager
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

// The functions that take the place of the system's in the whole program, the ODBC driver included; those of
// memory only where no sanitizer has done the same before, else in what is linked into the test.
// NOLINTBEGIN(bugprone-reserved-identifier, readability-inconsistent-declaration-parameter-name)
#if defined(XLS2TKI_SANITIZED)
#define OURS(name) __wrap_##name
#define SYSTEM(name) __real_##name
#else
#define OURS(name) name
#define SYSTEM(name) __libc_##name
#endif

#pragma GCC visibility push(default)
extern "C" {

void* SYSTEM(malloc)(std::size_t size);
void* SYSTEM(calloc)(std::size_t count, std::size_t size);
void* SYSTEM(realloc)(void* block, std::size_t size);

void* OURS(malloc)(std::size_t size) {
    return FailsToAllocate(__builtin_return_address(0)) ? nullptr : SYSTEM(malloc)(size);
}

void* OURS(calloc)(std::size_t count, std::size_t size) {
    return FailsToAllocate(__builtin_return_address(0)) ? nullptr : SYSTEM(calloc)(count, size);
}

void* OURS(realloc)(void* block, std::size_t size) {
    return FailsToAllocate(__builtin_return_address(0)) ? nullptr : SYSTEM(realloc)(block, size);
}

#define INSTEAD_OF(name, type, parameters)           \
    type InsteadOf_##name parameters __asm__(#name); \
    type InsteadOf_##name parameters

#define SYSTEMS(name)                                                                               \
    [] {                                                                                            \
        static auto* const function = reinterpret_cast<decltype(&(name))>(dlsym(RTLD_NEXT, #name)); \
        return function;                                                                            \
    }()

// Where a failure is -1 and a reason.
#define FAILING_WITH(reason, fault, name, type, parameters, arguments)       \
    INSTEAD_OF(name, type, parameters) {                                     \
        return fault.Strikes() ? FailWith(reason) : SYSTEMS(name) arguments; \
    }

FAILING_WITH(EIO, reading, fstat, int, (int file, struct stat* status), (file, status))
FAILING_WITH(EIO, writing, ftruncate, int, (int file, off_t size), (file, size))
FAILING_WITH(ENOSPC, writing, write, ssize_t, (int file, const void* bytes, std::size_t count),
             (file, bytes, count))
FAILING_WITH(ENOSPC, streaming, fflush, int, (std::FILE * file), (file))
FAILING_WITH(EPERM, streaming, fchmod, int, (int file, mode_t mode), (file, mode))
FAILING_WITH(EACCES, streaming, rename, int, (const char* from, const char* to), (from, to))

INSTEAD_OF(open, int, (const char* path, int flags, mode_t mode)) {
    Fault& fault = (flags & O_ACCMODE) != O_RDONLY ? writing : reading;
    return fault.Strikes() ? FailWith(EACCES) : SYSTEMS(open)(path, flags, mode);
}

// What was written is lost, as a file system may find out late.
int Lose(int file) { return SYSTEMS(ftruncate)(file, 0); }

INSTEAD_OF(close, int, (int file)) {
    const bool isWritten = (fcntl(file, F_GETFL) & O_ACCMODE) != O_RDONLY;
    const bool fails = isWritten && writing.Strikes() && Lose(file) == 0;
    const int result = SYSTEMS(close)(file);
    return fails ? FailWith(ENOSPC) : result;
}

INSTEAD_OF(fsync, int, (int file)) {
    return streaming.Strikes() && Lose(file) == 0 ? FailWith(EIO) : 0;  // the disk takes most of the time
}

INSTEAD_OF(pread, ssize_t, (int file, void* bytes, std::size_t count, off_t offset)) {
    if (!reading.Strikes()) return SYSTEMS(pread)(file, bytes, count, offset);
    return isShrunk ? 0 : FailWith(EIO);
}

INSTEAD_OF(fopen, std::FILE*, (const char* path, const char* mode)) {
    if (!streaming.Strikes()) return SYSTEMS(fopen)(path, mode);
    errno = EACCES;
    return nullptr;
}

INSTEAD_OF(fread, std::size_t, (void* bytes, std::size_t size, std::size_t count, std::FILE* file)) {
    if (!streaming.Strikes()) return SYSTEMS(fread)(bytes, size, count, file);
    file->_flags |= _IO_ERR_SEEN;
    errno = EIO;
    return 0;
}

INSTEAD_OF(fwrite, std::size_t, (const void* bytes, std::size_t size, std::size_t count, std::FILE* file)) {
    if (!streaming.Strikes()) return SYSTEMS(fwrite)(bytes, size, count, file);
    errno = ENOSPC;
    return 0;
}

INSTEAD_OF(fclose, int, (std::FILE * file)) {
    const bool fails = streaming.Strikes() && SYSTEMS(fflush)(file) == 0 && Lose(fileno(file)) == 0;
    const int result = SYSTEMS(fclose)(file);
    return fails ? FailWith(ENOSPC) : result;
}

#pragma GCC visibility pop

// Of the driver manager, what the library calls.
#define FAILING(name, parameters, arguments) \
    SQLRETURN __real_##name parameters;      \
    SQLRETURN __wrap_##name parameters { return asking.Strikes() ? SQL_ERROR : __real_##name arguments; }

FAILING(SQLAllocHandle, (SQLSMALLINT kind, SQLHANDLE parent, SQLHANDLE* handle), (kind, parent, handle))
FAILING(SQLSetEnvAttr, (SQLHENV handle, SQLINTEGER attribute, SQLPOINTER value, SQLINTEGER size),
        (handle, attribute, value, size))
FAILING(SQLDriverConnectW,
        (SQLHDBC handle, SQLHWND window, SQLWCHAR* text, SQLSMALLINT length, SQLWCHAR* completed,
         SQLSMALLINT capacity, SQLSMALLINT* size, SQLUSMALLINT completion),
        (handle, window, text, length, completed, capacity, size, completion))
FAILING(SQLExecDirectW, (SQLHSTMT handle, SQLWCHAR* sql, SQLINTEGER length), (handle, sql, length))
FAILING(SQLNumResultCols, (SQLHSTMT handle, SQLSMALLINT* count), (handle, count))
FAILING(SQLDescribeColW,
        (SQLHSTMT handle, SQLUSMALLINT column, SQLWCHAR* name, SQLSMALLINT capacity, SQLSMALLINT* length,
         SQLSMALLINT* type, SQLULEN* size, SQLSMALLINT* scale, SQLSMALLINT* nullable),
        (handle, column, name, capacity, length, type, size, scale, nullable))
FAILING(SQLGetData,
        (SQLHSTMT handle, SQLUSMALLINT column, SQLSMALLINT type, SQLPOINTER data, SQLLEN capacity,
         SQLLEN* length),
        (handle, column, type, data, capacity, length))
FAILING(SQLFetch, (SQLHSTMT handle), (handle))
FAILING(SQLGetDiagRecW,
        (SQLSMALLINT kind, SQLHANDLE handle, SQLSMALLINT number, SQLWCHAR* state, SQLINTEGER* nativeCode,
         SQLWCHAR* message, SQLSMALLINT capacity, SQLSMALLINT* length),
        (kind, handle, number, state, nativeCode, message, capacity, length))

// A connection that stays open could not be freed.
SQLRETURN __real_SQLDisconnect(SQLHDBC handle);
SQLRETURN __wrap_SQLDisconnect(SQLHDBC handle) {
    const SQLRETURN result = __real_SQLDisconnect(handle);
    return asking.Strikes() ? SQL_ERROR : result;
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

// The command's main function.
int CommandMain(int count, char** arguments);

namespace {

constexpr auto kBefore = "<?xml?><TAMRISKIMPORT>as it was</TAMRISKIMPORT>";
const std::filesystem::path kExamples = XLS2TKI_TEST_DATA "/../../examples";
const std::string kDocument = NTest::ReadBytes(kExamples / "powertrain.xml");

struct Kind {
    const char* name;
    int importType;
    const char* input;
    bool isUtf8 = false;
};

void PrintTo(const Kind& kind, std::ostream* stream) { *stream << kind.name; }

const Kind kCsv = {"Csv", XLS2TKI_CSV, "powertrain.csv"};
const Kind kUtf8 = {"Utf8", XLS2TKI_CSV, "j1939.csv", true};
const Kind kExcel = {"Excel", XLS2TKI_EXCEL, "powertrain.xlsx"};
const Kind kOdbc = {"Odbc", XLS2TKI_ODBC, "powertrain.xlsx"};
const Kind kXls = {"Xls", XLS2TKI_EXCEL, "powertrain.xls"};
const Kind kXlsOdbc = {"XlsOdbc", XLS2TKI_ODBC, "powertrain.xls"};

// One for all tests: the driver manager looks for its configuration once.
const NTest::DriverManager driverManager;

class Conversions : public testing::Test {
  protected:
    Conversions() { driverManager.PutDrivers("[Excel]\nDriver=" XLS2TKI_TEST_OWN_ODBC_DRIVER "\n"); }
    ~Conversions() override { EXPECT_EQ(OpenFiles(), openBefore_); }

    bool Convert(int importType, const std::u16string& input, bool isUtf8 = false) {
        Xls2TkiConversion conversion{};
        conversion.size = sizeof conversion;
        conversion.inputPath = input.c_str();
        conversion.outputPath = output_.c_str();
        conversion.importType = importType;
        conversion.separator = u';';
        conversion.forwardMessages = true;
        conversion.utf8 = isUtf8;
        conversion.findings = true;
        return xls2tki_convert(&conversion);
    }
    static bool IsWritten() {
        Xls2TkiFacts facts{};
        facts.size = sizeof facts;
        return xls2tki_facts(&facts) && facts.written;
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
    // a conversion said that it is done, and whether an operation failed.
    template <typename Check>
    void FailEach(Fault& fault, bool lasts, Check check) {
        ExpectConversion();
        int number = 0;
        for (bool isReached = true; isReached && !HasFailure();) {
            SCOPED_TRACE(++number);
            folder_.Put("output", kBefore);
            fault.Begin(number, lasts);
            const bool isDone = Convert(GetParam().importType, input_, GetParam().isUtf8);
            isReached = fault.End();
            EXPECT_TRUE(isDone || isReached);
            EXPECT_NE(*xls2tki_message(), 0);
            Xls2TkiFacts facts{};
            facts.size = sizeof facts;
            EXPECT_EQ(xls2tki_facts(&facts), isDone);
            check(isDone, isReached);
            ExpectConversion();
        }
        EXPECT_GT(number, 3);
        std::printf("%d calls failed in turn.\n", number - 1);
    }

    void FailEach(Fault& fault, bool lasts) {
        FailEach(fault, lasts, [this](bool isDone, bool) {
            EXPECT_EQ(folder_.Read("output"), isDone ? document_ : kBefore);
            EXPECT_EQ(IsWritten(), isDone);
        });
    }

    std::filesystem::path example_ = kExamples / GetParam().input;
    std::string document_ = NTest::ReadBytes(std::filesystem::path(example_).replace_extension("xml"));

  private:
    void ExpectConversion() {
        EXPECT_TRUE(Convert(GetParam().importType, input_, GetParam().isUtf8))
            << NTest::Utf8(xls2tki_message());
        EXPECT_EQ(folder_.Read("output"), document_);
    }

    // UTF-8 with its mark, which is read first and would hide the name of the first column.
    std::u16string input_ = GetParam().isUtf8
                                ? folder_.Put("table", "\xEF\xBB\xBF" + NTest::ReadBytes(example_))
                                : example_.u16string();
};

TEST_F(Conversions, ExplainALackOfMemoryThatKeepsTheMessage) {
    EXPECT_FALSE(Convert(XLS2TKI_CSV, folder_.Path(std::string(250, 'x'))));
    allocation.Begin(1, true);
    const char16_t* const message = xls2tki_message();
    EXPECT_TRUE(allocation.End());
    EXPECT_EQ(std::u16string(message), u"There is not enough memory.");
    EXPECT_TRUE(std::u16string(xls2tki_message()).starts_with(u"Error opening inputfile:"));
}

TEST_F(Conversions, LeaveNothingOfTheOneBeforeWhereMemoryEndsAtOnce) {
    const std::u16string input = folder_.Put("table", "DTC;Text\n1;a\n");
    const auto convert = [&] {
        return NXls2Tki::Xls2TkiConvert(input.c_str(), output_.c_str(), NXls2Tki::ImportTypeCSV, false, u';',
                                        false);
    };
    for (int number = 1; number < 10; ++number) {
        EXPECT_TRUE(convert());
        allocation.Begin(number, true);
        EXPECT_THROW(convert(), std::bad_alloc);
        EXPECT_TRUE(allocation.End());
        EXPECT_EQ(*NXls2Tki::GetLoggedMessages(), 0) << number;
    }
}

TEST_P(Faults, OfMemoryLeaveTheOutputWhole) {
    FailEach(allocation, false);
    if (GetParam().importType != XLS2TKI_ODBC) FailEach(allocation, true);  // there it takes too long
}

TEST_P(Faults, OfReadingLeaveTheOutputWhole) {
    for (const bool shrinks : {false, true}) {
        isShrunk = shrinks;
        for (const bool lasts : {false, true}) {
            FailEach(reading, lasts, [this](bool isDone, bool) {
                EXPECT_EQ(folder_.Read("output"), isDone ? document_ : kBefore);
                const std::u16string message = xls2tki_message();
                EXPECT_EQ(message.find(u"damaged"), message.npos) << NTest::Utf8(message);
            });
        }
    }
    if (GetParam().importType == XLS2TKI_ODBC) {
        FailEach(asking, false);
        FailEach(asking, true);
    }
}

// Whether the output could be written is not part of the result, but of the facts.
TEST_P(Faults, OfWritingAreForTheHostToSee) {
    FailEach(writing, false, [this](bool isDone, bool hasFailed) {
        EXPECT_TRUE(isDone);
        EXPECT_EQ(IsWritten(), !hasFailed);
        const std::string written = folder_.Read("output");
        EXPECT_TRUE(written == kBefore || document_.starts_with(written)) << written;
    });
}

INSTANTIATE_TEST_SUITE_P(Kinds, Faults, testing::Values(kCsv, kUtf8, kExcel, kOdbc, kXls, kXlsOdbc),
                         testing::PrintToStringParamName());

// The command in a process of its own, in a folder where it finds a table. The exit status also tells whether
// the call that was to fail was reached.
class Command : public testing::Test {
  protected:
    static constexpr int kReached = 64;

    int Run(Fault& fault, int number, bool lasts, const std::function<int()>& command) {
        std::fflush(nullptr);  // else both processes would
        const pid_t process = fork();
        if (process == 0) {
            const std::string folder = NTest::Utf8(folder_.Path(""));
            const bool isReady = chdir(folder.c_str()) == 0 && setenv("TMPDIR", folder.c_str(), 1) == 0 &&
                                 std::freopen("table.csv", "rb", stdin) != nullptr &&
                                 std::freopen("printed", "wb", stdout) != nullptr &&
                                 std::freopen("told", "wb", stderr) != nullptr;
            fault.Begin(number, lasts);
            const int status = isReady ? command() : -1;
            const int reached = fault.End() ? kReached : 0;
            std::fflush(nullptr);
            _exit(status + reached);
        }
        int status = 0;
        waitpid(process, &status, 0);
        return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    }

    // Fails one call after the other, until the command is done without. `keeps`: what there was stays as it
    // was, else the document's beginning is there.
    void FailEach(Fault& fault, const char* input, const char* output, const char* written, bool keeps) {
        int number = 0;
        for (int status = kReached; (status & kReached) != 0 && !HasFailure();) {
            SCOPED_TRACE(++number);
            folder_.Put(written, kBefore);
            status = Run(fault, number, false, [&] {
                std::string values[] = {"", "--csv", input, output};
                char* arguments[] = {values[0].data(), values[1].data(), values[2].data(), values[3].data()};
                return CommandMain(4, arguments);
            });
            const std::string document = folder_.Read(written);
            const std::string told = folder_.Read("told");
            if ((status & ~kReached) == 0) {
                EXPECT_EQ(document, kDocument);
            } else {
                EXPECT_TRUE(status == kReached + 1 || status == kReached + 2) << status;
                EXPECT_TRUE(told.starts_with("xls2tki: ") && told.ends_with("\n")) << told;
                EXPECT_TRUE(keeps ? document == kBefore : kDocument.starts_with(document)) << document;
            }
            EXPECT_EQ(std::distance(std::filesystem::directory_iterator(folder_.Path("")), {}), kFiles);
        }
        EXPECT_GT(number, 1);
        std::printf("%d calls failed in turn.\n", number - 1);
    }

    NTest::TempFolder folder_;

  private:
    static constexpr std::ptrdiff_t kFiles = 4;  // the table, what is printed and told, and the output
    std::u16string table_ = folder_.Put("table.csv", NTest::ReadBytes(kExamples / kCsv.input));
    std::u16string before_ = folder_.Put("output", kBefore);
};

TEST_F(Command, LeavesTheOutputWholeWhenACallFails) {
    for (Fault* const fault : {&reading, &writing, &streaming}) {
        FailEach(*fault, "table.csv", "output", "output", true);
        FailEach(*fault, "-", "-", "printed", false);
    }
}

// What the command shows, reports and writes besides the document comes behind it: where that fails, the
// document is in its place, and nothing says that it is not.
TEST_F(Command, HasTheDocumentOrTheOlderOneWhenMemoryEnds) {
    folder_.Put("table.csv", "DTC;Text;;x\nP0001;first;x;\n;second;;y\n");
    NCli::Options options;
    options.input = "table.csv";
    options.output = "output";
    getpwuid(getuid());  // for which the C library needs memory, once
    const auto convert = [&options] { return NCli::ExitStatusOf([&options] { NCli::Convert(options); }); };
    for (const char* const sarif : {"", "log"}) {
        options.sarif = sarif;
        options.reports = options.sarif.empty();
        EXPECT_EQ(Run(allocation, 0, true, convert), 0);
        const std::string whole = folder_.Read("output");
        int number = 0;
        for (int status = kReached; (status & kReached) != 0 && !HasFailure();) {
            SCOPED_TRACE(++number);
            folder_.Put("output", kBefore);
            folder_.Put("log", "");
            status = Run(allocation, number, true, convert);
            const bool isThere = folder_.Read("output") == whole;
            const std::string told = folder_.Read("told");
            EXPECT_TRUE(isThere || folder_.Read("output") == kBefore);
            EXPECT_EQ(told.find("to convert this table") == std::string::npos, isThere) << told;
            const bool isWhole = isThere && told.find("Could not write") == std::string::npos;
            EXPECT_EQ(status & ~kReached, isWhole ? 0 : 1) << told;
        }
        std::printf("%d allocations failed, with all behind them.\n", number - 1);
    }
}

class LongRun : public Conversions {
  protected:
    struct Input {
        int importType;
        std::u16string path;
        bool isGood;
    };

    static std::size_t MemoryInUse() {
        const struct mallinfo2 memory = mallinfo2();
        return memory.uordblks + memory.hblkhd;  // large blocks are mapped on their own
    }

    // Converts the inputs again and again. Once it has settled, no conversion may leave more memory behind
    // than so many bytes. XLS2TKI_TEST_CONVERSIONS sets how many there are; the default is for every day.
    void Repeat(const std::vector<Input>& inputs, double mostBytes) {
        const char* const given = std::getenv("XLS2TKI_TEST_CONVERSIONS");
        const std::size_t rounds = (given == nullptr ? 400 : std::stoul(given)) / inputs.size();
        const std::size_t settling = rounds / 4;
        std::size_t before = 0;
        for (std::size_t round = 0; round < rounds && !HasFailure(); ++round) {
            if (round == settling) before = MemoryInUse();
            for (const Input& input : inputs) EXPECT_EQ(Convert(input.importType, input.path), input.isGood);
        }
        const std::size_t after = MemoryInUse();
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
