// check-folder.mjs [--if-there] FOLDER
//
// Does what check-package does with every package of a folder, each with the expectation that
// is next to it as PACKAGE.json. A folder without packages, or a package without expectation, is
// a failure; with --if-there a folder that is missing or empty ends with the status 77: nothing was
// checked. Prints what fails, and a line for each package.
import { readdir, readFile } from 'node:fs/promises';
import path from 'node:path';
import { parseArgs } from 'node:util';
import { checkPackage } from './package-checks.mjs';

async function namesIn(folder, mayBeMissing) {
    try {
        return await readdir(folder);
    } catch (error) {
        if (mayBeMissing && error.code === 'ENOENT') {
            return [];
        }
        throw error;
    }
}

const { values, positionals } = parseArgs({
    allowPositionals: true,
    options: { 'if-there': { type: 'boolean' } }
});
if (positionals.length !== 1) {
    console.error('usage: check-folder.mjs [--if-there] FOLDER');
    process.exit(2);
}

const [folder] = positionals;
const names = await namesIn(folder, values['if-there']);
const packages = names.filter(name => /\.(sprite3|sb3)$/.test(name)).sort();
if (packages.length === 0) {
    console.error(values['if-there'] ?
        '*** SKIPPED, NOTHING CHECKED: there are no packages to check' :
        'check-folder: there are no packages to check');
    process.exit(values['if-there'] ? 77 : 1);
}

let failed = 0;
for (const name of packages) {
    const file = path.join(folder, name);
    const report =
        await checkPackage(file, JSON.parse(await readFile(`${file}.json`, 'utf8')));
    if (report.passed) {
        console.log(`ok    ${name}: ${report.checks} checks`);
    } else {
        ++failed;
        report.failures.forEach(({ name: what, reason }) =>
            console.log(`FAIL  ${name}: ${what}: ${reason}`));
    }
}
console.log(`${packages.length} packages, ${failed} of them wrong`);
process.exit(failed === 0 ? 0 : 1);
