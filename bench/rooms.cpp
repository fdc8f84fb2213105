// Times the steps of a conversion one by one, on a table of ten thousand rows.

#include <benchmark/benchmark.h>
#include <unistd.h>

#include <cstdint>
#include <filesystem>
#include <fstream>
#include <ios>
#include <set>
#include <string>
#include <string_view>

#include "checks/table_checks.h"
#include "document/dtc_convert.h"
#include "document/import_document.h"
#include "document/xml_tag.h"
#include "log/log_object.h"
#include "platform/files.h"
#include "platform/text_buffer.h"
#include "sources/csv_heap.h"
#include "xml/utf8_serializer.h"

namespace {

constexpr std::int64_t kRows = 10'000;

const std::u16string_view kDescription = u"Kühlmitteltemperatursensor, signal > maximum";
const std::u16string_view kItems[] = {u"bestätigt",     u"2",         u"MIL",
                                      u"n > 600 1/min", u"40 cycles", u"check wiring"};

// The table as a file, for as long as the program runs.
class TableFile {
  public:
    TableFile()
        : path_(std::filesystem::temp_directory_path() / ("rooms-" + std::to_string(getpid()) + ".csv")) {
        std::ofstream table(path_, std::ios::binary);
        table << "DTC;Description;Status;Severity;Lamp;Condition;Healing;Advice\r\n";
        for (std::int64_t row = 0; row < kRows; ++row) {
            table << "P1" << row % 900 + 100 << ";\"Kühlmitteltemperatursensor \"\"A\"\"; signal > maximum\""
                  << ";bestätigt;2;MIL;n > 600 1/min;40 cycles;check wiring\r\n";
        }
    }
    TableFile(const TableFile&) = delete;
    TableFile& operator=(const TableFile&) = delete;
    ~TableFile() { std::filesystem::remove(path_); }

    [[nodiscard]] std::u16string Path() const { return path_.u16string(); }

  private:
    std::filesystem::path path_;
};

const TableFile& Table() {
    static const TableFile table;
    return table;
}

// A source on the table, opened.
class OpenedTable {
  public:
    OpenedTable() { heap_.OpenSource(); }
    VCSVReader::VDefaultCSVHeap& Heap() { return heap_; }
    NPlatform::TextBuffer Document() {
        NPlatform::TextBuffer document;
        VSimpleXMLCreation::BuildImportDocument(*heap_.GetIterator(), document, log_, u"instance", u"variant",
                                                {}, {}, {});
        return document;
    }

  private:
    VCSVReader::VLogObject log_{false};
    VCSVReader::VDefaultCSVHeap heap_{Table().Path(), &log_, u';', true};
};

void CountRows(benchmark::State& state) { state.SetItemsProcessed(state.iterations() * kRows); }

void ReadFile(benchmark::State& state) {
    for ([[maybe_unused]] auto _ : state) OpenedTable().Heap();
    CountRows(state);
}
BENCHMARK(ReadFile)->Unit(benchmark::kMicrosecond);

void ParseTable(benchmark::State& state) {
    for ([[maybe_unused]] auto _ : state) {
        state.PauseTiming();
        OpenedTable table;
        state.ResumeTiming();
        table.Heap().ReadData();
    }
    CountRows(state);
}
BENCHMARK(ParseTable)->Unit(benchmark::kMicrosecond);

void CheckTable(benchmark::State& state) {
    OpenedTable table;
    table.Heap().ReadData();
    for ([[maybe_unused]] auto _ : state) table.Heap().CheckConsistency();
    CountRows(state);
}
BENCHMARK(CheckTable)->Unit(benchmark::kMicrosecond);

void FindFindings(benchmark::State& state) {
    OpenedTable table;
    table.Heap().ReadData();
    const NChecks::Wishes wishes = {{}, {}, {}, u';', false, {}};
    for ([[maybe_unused]] auto _ : state) {
        auto& rows = *table.Heap().GetIterator();
        benchmark::DoNotOptimize(NChecks::FindFindings(rows, true, nullptr, wishes).causes.size());
    }
    CountRows(state);
}
BENCHMARK(FindFindings)->Unit(benchmark::kMicrosecond);

void ConvertNumber(benchmark::State& state, std::u16string_view text, bool hexDefault, bool saeCodes) {
    for ([[maybe_unused]] auto _ : state) {
        benchmark::DoNotOptimize(text);
        benchmark::DoNotOptimize(VSimpleXMLCreation::VDTCConvert(text, hexDefault, saeCodes).GetValue());
    }
}
BENCHMARK_CAPTURE(ConvertNumber, Sae, u"P0123", false, true);
BENCHMARK_CAPTURE(ConvertNumber, SaeWithFailureType, u"U212387", false, true);
BENCHMARK_CAPTURE(ConvertNumber, Hexadecimal, u"1A2B3C", true, false);
BENCHMARK_CAPTURE(ConvertNumber, Decimal, u"1715004", false, false);

void NumberToText(benchmark::State& state) {
    const VSimpleXMLCreation::VDTCConvert number(u"U212387", false, true);
    for ([[maybe_unused]] auto _ : state) benchmark::DoNotOptimize(number.ToString());
}
BENCHMARK(NumberToText);

// A DTC with its description and items, the first one's being the model of all others'.
void AddDtc(VSimpleXMLCreation::VXmlTag& dtcs, VSimpleXMLCreation::VXmlTag*& model) {
    auto* const dtc = dtcs.AddChild(u"DTC");
    dtc->SetNumberAttribute(u"number", 14754695);
    dtc->AddChild(u"ERRORTEXT")->ReferToText(kDescription);
    auto* const record = dtc->AddChild(u"RECORD");
    for (const std::u16string_view text : kItems) {
        auto* const item = model == nullptr ? record->AddChild(u"RECORDITEM") : record->AddChildLike(*model);
        if (model == nullptr) (model = item)->SetAttribute(u"itemmappingref", u"_1", true);
        item->ReferToText(text);
    }
}

void FillTree(VSimpleXMLCreation::VXmlTag& dtcs) {
    VSimpleXMLCreation::VXmlTag* model = nullptr;
    for (std::int64_t row = 0; row < kRows; ++row) AddDtc(dtcs, model);
}

void BuildTree(benchmark::State& state) {
    for ([[maybe_unused]] auto _ : state) {
        VSimpleXMLCreation::VXmlTagRoot dtcs(u"DTCS");
        FillTree(dtcs);
    }
    CountRows(state);
}
BENCHMARK(BuildTree)->Unit(benchmark::kMicrosecond);

void PrintTree(benchmark::State& state) {
    VSimpleXMLCreation::VXmlTagRoot dtcs(u"DTCS");
    FillTree(dtcs);
    for ([[maybe_unused]] auto _ : state) benchmark::DoNotOptimize(dtcs.Print().Size());
    CountRows(state);
}
BENCHMARK(PrintTree)->Unit(benchmark::kMicrosecond);

void BuildDocument(benchmark::State& state) {
    OpenedTable table;
    table.Heap().ReadData();
    for ([[maybe_unused]] auto _ : state) {
        table.Heap().GetIterator()->Reset();
        benchmark::DoNotOptimize(table.Document().Size());
    }
    CountRows(state);
}
BENCHMARK(BuildDocument)->Unit(benchmark::kMicrosecond);

// To a device that takes everything, so that what is timed is the conversion and the line ends.
void Serialize(benchmark::State& state) {
    OpenedTable table;
    table.Heap().ReadData();
    const NPlatform::TextBuffer document = table.Document();
    for ([[maybe_unused]] auto _ : state) {
        NPlatform::TextOutputStream stream(u"/dev/null");
        NTamriskUtil::NXml::VUTF8Serializer(stream, 15).Write(document.View());
    }
    state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(document.Size()));
    CountRows(state);
}
BENCHMARK(Serialize)->Unit(benchmark::kMicrosecond);

}  // namespace
