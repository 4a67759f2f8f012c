// Loading and walking a million rows of the dBASE reader's typical table (N, C(40), N, D, L,
// C(60), text blank-padded) in a record set through its bulk interface, against a plain
// std::vector of structs with std::u16string text doing the same work. The walk reads every
// value as a Variant, through the Field objects in the record set and by copying in the
// baseline. Counters: rows per second, and the bytes the rows occupy.
#include <benchmark/benchmark.h>

#include <cstdio>
#include <memory>
#include <ravelin/data/recordset.hpp>
#include <string>
#include <vector>

namespace {

using ravelin::Recordset;
using ravelin::String;
using ravelin::Variant;

constexpr std::size_t kRows = 1'000'000;

// The text of a character field: a code and blanks up to the width, as dBASE stores it.
std::string padded(const char* prefix, std::size_t row, std::size_t width) {
  char buffer[64];
  const int length = std::snprintf(buffer, sizeof buffer, "%s %07zu", prefix, row);
  std::string text(buffer, static_cast<std::size_t>(length));
  text.resize(width, ' ');
  return text;
}

std::shared_ptr<Recordset> emptyTable() {
  auto rs = ravelin::makeObject<Recordset>();
  auto fields = rs->Fields();
  fields->Append(u"AMOUNT", ravelin::adDouble);
  fields->Append(u"NAME", ravelin::adVarWChar, 40);
  fields->Append(u"QTY", ravelin::adDouble);
  fields->Append(u"SOLD", ravelin::adDate);
  fields->Append(u"ACTIVE", ravelin::adBoolean);
  fields->Append(u"NOTE", ravelin::adVarWChar, 60);
  rs->Open();
  return rs;
}

std::shared_ptr<Recordset> loadTable() {
  auto rs = emptyTable();
  rs->reserveRows(kRows);
  std::string name = padded("Product", 0, 40);
  std::string note = padded("Note", 0, 60);
  for (std::size_t i = 0; i < kRows; ++i) {
    const std::size_t row = rs->appendRow();
    std::snprintf(name.data() + 8, 8, "%07zu", i);
    std::snprintf(note.data() + 5, 8, "%07zu", i);
    name[15] = ' ';
    note[12] = ' ';
    rs->setCellDouble(row, 0, static_cast<double>(i) * 0.25);
    rs->setCellLatin1(row, 1, name);
    rs->setCellDouble(row, 2, static_cast<double>(i % 100));
    rs->setCellDate(row, 3, 40000.0 + static_cast<double>(i % 3650));
    rs->setCellBoolean(row, 4, i % 2 == 0);
    rs->setCellLatin1(row, 5, note);
  }
  return rs;
}

std::size_t storageBytes(const Recordset& rs) {
  std::size_t bytes = rs.store().storedRows();  // one status byte a row
  for (std::size_t field = 0; field < rs.store().fieldCount(); ++field)
    bytes += rs.store().column(field).storageBytes();
  return bytes;
}

struct PlainRow {
  double amount;
  std::u16string name;
  double qty;
  double sold;
  bool active;
  std::u16string note;
};

std::u16string widened(const std::string& text) {
  return std::u16string(text.begin(), text.end());
}

std::vector<PlainRow> loadPlain() {
  std::vector<PlainRow> rows;
  rows.reserve(kRows);
  std::string name = padded("Product", 0, 40);
  std::string note = padded("Note", 0, 60);
  for (std::size_t i = 0; i < kRows; ++i) {
    std::snprintf(name.data() + 8, 8, "%07zu", i);
    std::snprintf(note.data() + 5, 8, "%07zu", i);
    name[15] = ' ';
    note[12] = ' ';
    rows.push_back({static_cast<double>(i) * 0.25, widened(name), static_cast<double>(i % 100),
                    40000.0 + static_cast<double>(i % 3650), i % 2 == 0, widened(note)});
  }
  return rows;
}

void BM_RecordsetBulkLoad(benchmark::State& state) {
  std::size_t bytes = 0;
  for (auto _ : state) {
    auto rs = loadTable();
    bytes = storageBytes(*rs);
    benchmark::DoNotOptimize(rs.get());
  }
  state.SetItemsProcessed(static_cast<int64_t>(state.iterations() * kRows));
  state.counters["MB"] = static_cast<double>(bytes) / 1e6;
}
BENCHMARK(BM_RecordsetBulkLoad)->Unit(benchmark::kMillisecond);

void BM_PlainVectorLoad(benchmark::State& state) {
  std::size_t bytes = 0;
  for (auto _ : state) {
    auto rows = loadPlain();
    bytes = rows.capacity() * sizeof(PlainRow);
    for (const PlainRow& row : rows)
      bytes += (row.name.capacity() + row.note.capacity() + 2) * sizeof(char16_t);
    benchmark::DoNotOptimize(rows.data());
  }
  state.SetItemsProcessed(static_cast<int64_t>(state.iterations() * kRows));
  state.counters["MB"] = static_cast<double>(bytes) / 1e6;
}
BENCHMARK(BM_PlainVectorLoad)->Unit(benchmark::kMillisecond);

void BM_RecordsetWalk(benchmark::State& state) {
  auto rs = loadTable();
  std::vector<std::shared_ptr<ravelin::Field>> fields;
  for (int32_t f = 0; f < rs->Fields()->Count(); ++f)
    fields.push_back(rs->Fields()->Item(Variant(f)));
  for (auto _ : state) {
    std::size_t units = 0;
    rs->MoveFirst();
    while (!rs->EndOfFile()) {
      for (const auto& field : fields) {
        const Variant value = field->Value();
        if (value.isString()) units += value.asString().size();
      }
      rs->MoveNext();
    }
    benchmark::DoNotOptimize(units);
  }
  state.SetItemsProcessed(static_cast<int64_t>(state.iterations() * kRows));
}
BENCHMARK(BM_RecordsetWalk)->Unit(benchmark::kMillisecond);

void BM_PlainVectorWalk(benchmark::State& state) {
  const auto rows = loadPlain();
  for (auto _ : state) {
    std::size_t units = 0;
    for (const PlainRow& row : rows) {
      const Variant values[] = {Variant(row.amount), Variant(String(row.name)),
                                Variant(row.qty),    Variant(ravelin::Date{row.sold}),
                                Variant(row.active), Variant(String(row.note))};
      for (const Variant& value : values) {
        if (value.isString()) units += value.asString().size();
      }
    }
    benchmark::DoNotOptimize(units);
  }
  state.SetItemsProcessed(static_cast<int64_t>(state.iterations() * kRows));
}
BENCHMARK(BM_PlainVectorWalk)->Unit(benchmark::kMillisecond);

}  // namespace
