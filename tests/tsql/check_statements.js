// Reads statements, one a line, from standard input and names those that are not Transact-SQL.
'use strict';
const readline = require('readline');
require('antlr4ts');
const { antlr4tsSQL } = require('antlr4ts-sql/dist/src/antlr4tsSQL.js');
const { SQLDialect } = require('antlr4ts-sql/dist/src/models/SQLDialect.js');

const grammar = new antlr4tsSQL(SQLDialect.TSQL);

/** What the grammar objects to in a statement. */
function complaints(statement) {
  const found = [];
  const listener = {
    syntaxError: (recognizer, symbol, line, column, message) => found.push(`column ${column + 1}: ${message.split(' expecting ')[0]}`),
  };
  grammar.getParseTree(grammar.getParser(grammar.getTokens(statement, [listener]), [listener]));
  return found;
}

let read = 0;
let refused = 0;
readline
  .createInterface({ input: process.stdin })
  .on('line', (statement) => {
    if (statement.trim() === '') return;
    ++read;
    const found = complaints(statement);
    if (found.length === 0) return;
    ++refused;
    console.log(`${statement}\n  ${found.join('\n  ')}`);
  })
  .on('close', () => {
    console.log(`${read} statements, ${refused} refused`);
    process.exitCode = read > 0 && refused === 0 ? 0 : 1;
  });
