// Validates what check_schema.py has written with another validator: `node check.mjs NODE_MODULES CASES SCHEMA...`,
// where a schema is named after its dialect. All of them must be valid against their metaschemas, and say of each
// document what is written next to it.
import {createRequire} from 'node:module';
import {readFileSync} from 'node:fs';
import path from 'node:path';
import process from 'node:process';

const [modules, cases, ...schemas] = process.argv.slice(2);
const require = createRequire(path.join(modules, 'package.json'));
const dialects = {'2020-12': require('ajv/dist/2020').default, 'draft-07': require('ajv').default};
const documents = readFileSync(cases, 'utf8').trimEnd().split('\n').map(line => JSON.parse(line));
let wrong = 0;
for (const file of schemas) {
  const dialect = path.basename(file, '.json');
  const ajv = new dialects[dialect]({strict: true, strictTypes: false, strictRequired: false});
  const validate = ajv.compile(JSON.parse(readFileSync(file, 'utf8')));
  for (const {valid, document} of documents)
    if (validate(document) !== valid) {
      wrong += 1;
      console.error(`${dialect}: not ${valid}: ${JSON.stringify(validate.errors).slice(0, 300)}`);
    }
}
console.log(`${schemas.length} schemas, ${documents.length} documents, ${wrong} wrong`);
process.exitCode = wrong === 0 && schemas.length === 2 ? 0 : 1;
