// Runs statements in DuckDB, of which the last is written as CSV when a file is named, and prints its seconds.
// usage: node query.mjs DATABASE MEMORY-LIMIT STATEMENTS-FILE [OUTPUT.csv]
// Statements end with ";" at the end of a line.
import { readFileSync } from "node:fs";
import { createRequire } from "node:module";

const [database, memory, statementsFile, output] = process.argv.slice(2);
const require = createRequire(process.cwd() + "/package.json");
const { DuckDBInstance } = require("@duckdb/node-api");
const instance = await DuckDBInstance.create(database, { memory_limit: memory, threads: "2" });
const connection = await instance.connect();
const statements = readFileSync(statementsFile, "utf8").split(/;\s*$/m).map((text) => text.trim()).filter(Boolean);
for (const [place, statement] of statements.entries()) {
    const isLast = place + 1 === statements.length;
    const start = process.hrtime.bigint();
    await connection.run(isLast && output ? `copy (${statement}) to '${output}' (header, delimiter ',')` : statement);
    if (isLast) console.log((Number(process.hrtime.bigint() - start) / 1e9).toFixed(3));
}
