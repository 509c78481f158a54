// All that is asked about one package, in the order in which a reader wants to know.
import { checkArrival } from './check-arrival.mjs';
import { checkPictures } from './check-pictures.mjs';
import { checkPlay } from './check-play.mjs';
import { installed } from './installed.mjs';
import { openPackage } from './package-file.mjs';
import { Report } from './report.mjs';
import { loadIntoMachine } from './virtual-machine.mjs';

/** Throws what the official schema finds wrong. */
function validate({ bytes, isSprite }) {
    return new Promise((resolve, reject) => {
        installed('scratch-parser')(bytes, isSprite, error => {
            if (error) {
                const findings = JSON.stringify(error.sb3Errors ?? error);
                reject(new Error(`the schema refuses it: ${findings.slice(0, 600)}`));
            } else {
                resolve();
            }
        });
    });
}

/** Checks the package at `path` against an expectation (see README.md). Gives a Report. */
export async function checkPackage(path, expectation) {
    const report = new Report();
    const opened = await report.attempt('the package opens', () => openPackage(path));
    if (!opened) {
        return report;
    }
    await report.attempt('the official schema accepts it', () => validate(opened));
    checkPictures(report, opened);
    const machine =
        await report.attempt('the virtual machine loads it', () => loadIntoMachine(opened));
    if (machine) {
        checkArrival(report, machine, expectation);
        checkPlay(report, machine, expectation);
    }
    return report;
}
