// check-package.mjs PACKAGE EXPECTATION.json [PACKAGE EXPECTATION.json]...
//
// Asks the official schema and the official virtual machine whether packages arrive as exported.
// One line per check; status 0: all is well, 1: something is not, 2: called wrongly.
import { readFile } from 'node:fs/promises';
import { checkPackage } from './package-checks.mjs';

const pairs = process.argv.slice(2);
if (pairs.length === 0 || pairs.length % 2 !== 0) {
    console.error('usage: check-package.mjs PACKAGE EXPECTATION.json [...]');
    process.exit(2);
}

let allPassed = true;
for (let index = 0; index < pairs.length; index += 2) {
    const [path, expectationPath] = pairs.slice(index, index + 2);
    const expectation = JSON.parse(await readFile(expectationPath, 'utf8'));
    const report = await checkPackage(path, expectation);
    report.print(path);
    allPassed &&= report.passed;
}
process.exit(allPassed ? 0 : 1);
