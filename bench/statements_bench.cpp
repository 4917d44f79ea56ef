// The statement layer: what reading and writing out a text costs, and each typical statement beside the query
// that one would write by hand for the embedded database.
#include <benchmark/benchmark.h>
#include <sqlite3.h>

#include <string>

#include "bench_company.h"
#include "database/connection.h"
#include "database/recordset.h"

namespace ktl {
namespace {

constexpr int kEmployees = 10000;

struct Pair {
  const char* name;
  const char* said;
  const char* byHand;
};

const Pair kPairs[] = {
    {"list",
     "SELECT  IA.SERIALNO, IA.SINAME, IA.LOANACNO, IA.SIDATE, IA.ACTAMT AS ACTAMT, IA.INTAMT AS INTAMT, 0 AS "
     "EMIINTEREST, 0 AS RECEIPTS, 0 AS RECVDEMI, IA.REMARKS FROM INS_ADVLOAN IA WHERE IA.EMPID = 70 AND "
     "IA.SITYPE = 2 ORDER BY IA.SERIALNO",
     "SELECT SERIALNO, SINAME, LOANACNO, SIDATE, ACTAMT, INTAMT, 0, 0, 0, REMARKS FROM INS_ADVLOAN WHERE "
     "EMPID = 70 AND "
     "SITYPE = 2 ORDER BY SERIALNO"},
    {"recovered",
     "Select Sum(E.MDFYAMT) From INS_EMIDETAIL E, SLC_SALARYCALC_E SE, SLC_SALARYCALC_D SD Where E.EMPID = "
     "SE.EMPID And E.MONTHYEAR = SE.MONTHYEAR And SE.SALID = SD.SALID And SE.INDICATOR <> 1  And E.EMPID = "
     "70 And E.SERIALNO = 1 And E.SITYPE = 2 And SD.LOAN > -1",
     "SELECT sum(E.MDFYAMT) FROM INS_EMIDETAIL E JOIN SLC_SALARYCALC_E SE ON E.EMPID = SE.EMPID AND "
     "E.MONTHYEAR = "
     "SE.MONTHYEAR JOIN SLC_SALARYCALC_D SD ON SE.SALID = SD.SALID WHERE SE.INDICATOR <> 1 AND E.EMPID = 70 "
     "AND "
     "E.SERIALNO = 1 AND E.SITYPE = 2 AND SD.LOAN > -1"},
    {"name", "Select * From INS_MASTER Where SITYPE = 2 And UPPER(SINAME) = 'Car Loan'",
     "SELECT * FROM INS_MASTER WHERE SITYPE = 2 AND upper(SINAME) = 'CAR LOAN'"},
    {"running",
     " SELECT DISTINCT ins.EMPID,EMPNAME ,REFNO FROM mas_employee mas,INS_EMIDETAIL ins  WHERE "
     "mas.empid=ins.empid AND MONTHYEAR= (SELECT MAX(MONTHYEAR) FROM MAS_MONTHYEAR) AND  SITYPE = 2 Order By "
     "EMPNAME",
     "SELECT DISTINCT i.EMPID, EMPNAME, REFNO FROM MAS_EMPLOYEE m JOIN INS_EMIDETAIL i ON m.EMPID = i.EMPID "
     "WHERE "
     "MONTHYEAR = (SELECT max(MONTHYEAR) FROM MAS_MONTHYEAR) AND SITYPE = 2 ORDER BY EMPNAME"},
    {"employees", "Select EMPID, EMPNAME, REFNO From MAS_EMPLOYEE Order By EMPNAME",
     "SELECT EMPID, EMPNAME, REFNO FROM MAS_EMPLOYEE ORDER BY EMPNAME"},
    {"overview",
     "Select Sum(ISNULL(MDFYAMT,0))  AS Total From INS_EMIDETAIL D,SLC_SALARYCALC_E E Where D.EMPID=E.EMPID "
     "AND D.MONTHYEAR = E.MONTHYEAR AND INDICATOR=0 AND ETOTAL-NETAMOUNT<>0 AND E.EMPID = 70 AND SITYPE = 2",
     "SELECT sum(ifnull(MDFYAMT, 0)) FROM INS_EMIDETAIL D JOIN SLC_SALARYCALC_E E ON D.EMPID = E.EMPID AND "
     "D.MONTHYEAR "
     "= E.MONTHYEAR WHERE INDICATOR = 0 AND ETOTAL - NETAMOUNT <> 0 AND E.EMPID = 70 AND SITYPE = 2"},
};

void Translate(benchmark::State& state, const Pair& pair) {
  Connection cn;
  cn.Open(ConnectionStringOf(BenchCompany(kEmployees)));
  // A number that changes keeps a text from being known already.
  std::int64_t changing = 0;
  for (auto _ : state) {
    std::string text = pair.said;
    if (const auto at = text.find("= 2"); at != std::string::npos)
      text.replace(at + 2, 1, std::to_string(++changing));
    benchmark::DoNotOptimize(cn.Explain(text));
  }
}

void Said(benchmark::State& state, const Pair& pair) {
  Connection cn;
  cn.Open(ConnectionStringOf(BenchCompany(kEmployees)));
  for (auto _ : state) {
    Recordset rs(cn, pair.said);
    benchmark::DoNotOptimize(rs.RecordCount());
  }
}

// Prepared each time, as a program that speaks SQLite would, and its rows copied out.
void ByHand(benchmark::State& state, const Pair& pair) {
  sqlite3* db = nullptr;
  sqlite3_open(BenchCompany(kEmployees).c_str(), &db);
  for (auto _ : state) {
    sqlite3_stmt* statement = nullptr;
    if (sqlite3_prepare_v2(db, pair.byHand, -1, &statement, nullptr) != SQLITE_OK)
      state.SkipWithError(pair.name);
    std::vector<std::vector<std::string>> rows;
    while (sqlite3_step(statement) == SQLITE_ROW) {
      auto& row = rows.emplace_back();
      for (int i = 0; i < sqlite3_column_count(statement); ++i) {
        const auto* text = reinterpret_cast<const char*>(sqlite3_column_text(statement, i));
        row.emplace_back(text == nullptr ? "" : text);
      }
    }
    benchmark::DoNotOptimize(rows);
    sqlite3_finalize(statement);
  }
  sqlite3_close(db);
}

}  // namespace
}  // namespace ktl

int main(int argc, char** argv) {
  for (const auto& pair : ktl::kPairs) {
    const std::string name = pair.name;
    benchmark::RegisterBenchmark(("Translate/" + name).c_str(), ktl::Translate, pair);
    benchmark::RegisterBenchmark(("Said/" + name).c_str(), ktl::Said, pair);
    benchmark::RegisterBenchmark(("ByHand/" + name).c_str(), ktl::ByHand, pair);
  }
  benchmark::Initialize(&argc, argv);
  benchmark::RunSpecifiedBenchmarks();
  benchmark::Shutdown();
}
