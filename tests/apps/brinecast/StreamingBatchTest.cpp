#include "brinecast/readers/AnalysisCsvReader.h"
#include "brinecast/calculation/Calculator.h"
#include "brinecast/readers/CsvChunkReader.h"
#include "brinecast/reports/CsvReport.h"
#include "brinecast/readers/CsvTable.h"
#include "brinecast/commands/StreamingBatch.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <fstream>
#include <map>
#include <sstream>
#include <string>
#include <vector>

using namespace korvane::Brinecast::cli;

namespace {

const ComponentNames& names() {
    static const ComponentNames n;
    return n;
}

std::string writeFile(const std::string& name, const std::string& text) {
    const std::string path = ::testing::TempDir() + name;
    std::ofstream(path, std::ios::binary) << text;
    return path;
}

/// Rows as the table reader gives them, from the whole text or chunk by chunk.
std::vector<CsvTable::Row> rowsOf(const std::string& text, std::size_t chunkRows) {
    std::vector<CsvTable::Row> rows;
    if (chunkRows == 0) return CsvTable::parse(text, "whole").rows();
    std::istringstream in(text);
    CsvChunkReader chunks(in);
    for (std::string chunk = chunks.next(chunkRows); !chunk.empty(); chunk = chunks.next(chunkRows)) {
        const CsvTable table = CsvTable::parse(chunk, "chunk");
        rows.insert(rows.end(), table.rows().begin(), table.rows().end());
    }
    return rows;
}

/// A batch whose rows fail in runs: unreadable numbers, and per-litre analyses without a
/// density when no engine can be loaded, next to rows that calculate.
std::string batchText() {
    const char* good[] = {"25,°C,1,bar,,mmol/kgw,100,99,1,", "60,°C,50,bar,1.05,mg/L,2300,3510,61,",
                          "80,°C,100,bar,,mmol/kgw,500,480,,0.01"};
    const char* unreadable = "25,°C,1,bar,,mmol/kgw,1OO,99,1,";
    const char* noEngine = "50,°C,10,bar,,mg/L,2300,3510,61,";
    std::string text = "name,temperature,temperature_unit,pressure,pressure_unit,density,unit,Na+,Cl-,HCO3-,CO2\n";
    const std::string pattern = "GGBBBGEEGBEGGGEBG\n\nBBGG";  // G good, B unreadable, E engine needed
    std::size_t row = 0;
    for (char kind : pattern) {
        if (kind == '\n') {
            text += "\n";
            continue;
        }
        const std::string name = "row " + std::to_string(++row);
        text += name + "," + (kind == 'G' ? good[row % 3] : kind == 'B' ? unreadable : noEngine) + "\n";
    }
    return text;
}

}  // namespace

// Chunks of any size give the rows of the whole table, each with its line in the file.
TEST(CsvChunkReader, ChunksGiveTheRowsOfTheWholeTableWithTheirLines) {
    const std::string texts[] = {
        "a,b\n1,2\n3,4\n5,6",
        "\xEF\xBB\xBF" "a,b\r\n1,2\r\n\r\n3,4\r\n",
        "a,\"b\nc\"\n\"x\ny\",2\n\n  \n3,\"4,\"\"5\"\"\"\n6,7\n",
        "a,b\r1,2\r3,4\r",
    };
    for (const std::string& text : texts) {
        const std::vector<CsvTable::Row> whole = rowsOf(text, 0);
        for (std::size_t chunkRows : {1u, 2u, 3u, 100u}) {
            const std::vector<CsvTable::Row> chunked = rowsOf(text, chunkRows);
            ASSERT_EQ(chunked.size(), whole.size()) << text << " in chunks of " << chunkRows;
            for (std::size_t i = 0; i < whole.size(); ++i) {
                EXPECT_EQ(chunked[i].line, whole[i].line) << text << " row " << i << " chunks of " << chunkRows;
                EXPECT_EQ(chunked[i].fields, whole[i].fields) << text << " row " << i << " chunks of " << chunkRows;
            }
        }
    }
}

// Streamed in chunks that end inside runs of failed rows, on one thread or several, the batch
// gives every row of the batch calculated whole, in input order, failed rows in place.
TEST(StreamingBatch, ChunksGiveTheWholeBatchRowForRowWithFailedRowsInPlace) {
    const std::string path = writeFile("streaming-batch.csv", batchText());
    const Calculator calculator("/no/engine/here", std::nullopt);

    std::vector<AnalysisResult> whole;
    for (AnalysisCsvReader::Row& row : AnalysisCsvReader(names()).read(batchText(), path)) {
        AnalysisResult r;
        if (row.analysis) {
            r.analysis = std::move(*row.analysis);
            calculator.calculate(r);
        } else {
            r.analysis.source = path + ":" + std::to_string(row.line);
            r.analysis.name = row.name;
            r.status = AnalysisResult::Status::Invalid;
            r.error = row.error;
        }
        whole.push_back(std::move(r));
    }
    std::ostringstream wholeText;
    CsvReport::write(wholeText, whole, true);
    const CsvTable expected = CsvTable::parse(wholeText.str(), "whole");

    for (std::size_t chunkRows : {1u, 2u, 4u, 7u, 1000u}) {
        for (unsigned threads : {1u, 3u}) {
            const StreamingBatch batch(names(), calculator, std::nullopt, chunkRows);
            const std::optional<StreamingBatch::Plan> plan = batch.plan(path);
            ASSERT_TRUE(plan);
            EXPECT_EQ(plan->rows, whole.size());
            std::ostringstream out;
            std::size_t lastDone = 0;
            const StreamingBatch::Counts counts =
                batch.run(path, *plan, out, threads, [&](std::size_t done) { lastDone = done; });
            EXPECT_EQ(lastDone, whole.size());
            EXPECT_EQ(counts.invalid, 7u);
            EXPECT_EQ(counts.failed, 4u);
            EXPECT_EQ(counts.ok, whole.size() - 11);

            // Columns may come in another order; every cell of the whole batch must be there.
            const CsvTable streamed = CsvTable::parse(out.str(), "streamed");
            ASSERT_EQ(streamed.rows().size(), expected.rows().size()) << chunkRows;
            std::map<std::string, std::size_t> column;
            for (std::size_t c = 0; c < streamed.header().size(); ++c) column[streamed.header()[c]] = c;
            for (std::size_t r = 0; r < expected.rows().size(); ++r) {
                for (std::size_t c = 0; c < expected.header().size(); ++c) {
                    ASSERT_TRUE(column.count(expected.header()[c])) << expected.header()[c];
                    EXPECT_EQ(streamed.rows()[r].fields[column[expected.header()[c]]], expected.rows()[r].fields[c])
                        << "row " << r << " column " << expected.header()[c] << " in chunks of " << chunkRows
                        << " on " << threads << " threads";
                }
            }
        }
    }
    std::remove(path.c_str());
}

TEST(StreamingBatch, AFileThatIsNoBatchIsLeftToTheWholeFileReport) {
    const Calculator calculator("/no/engine/here", std::nullopt);
    const StreamingBatch batch(names(), calculator, std::nullopt);
    for (const std::string& text : {std::string(), std::string("name,unit\n"), std::string("bogus,unit\n1,2\n"),
                                    std::string("name,temperature,temperature_unit,pressure,pressure_unit,unit\n\n")}) {
        EXPECT_FALSE(batch.plan(writeFile("not-a-batch.csv", text))) << text;
    }
    EXPECT_FALSE(batch.plan(::testing::TempDir() + "no-such-file.csv"));
}
