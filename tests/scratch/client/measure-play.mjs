// measure-play.mjs PACKAGE EXPECTATION.json [...]
//
// Plays packages in the browser by its own clock, and prints how long ten passes of the first sprite
// take, or all of its passes where it ends, beside how long they should. Status 1: one is more than
// 1 % and one step off. 77: there is no Chromium here. A busy machine can make it fail.
import { readFile } from 'node:fs/promises';
import { StageBrowser } from './stage-browser.mjs';
import { stepTime } from './stepped-clock.mjs';

const passesOfForever = 10;

/** How many changes of the costume to wait for, and how long they should take. */
function wantedOf({ costumes, plays }) {
    const delays = plays.delaysMs ?? costumes.map(() => plays.intervalMs);
    const passMs = delays.reduce((sum, delay) => sum + delay, 0);
    if (plays.loopCount === -1) {
        return { passes: passesOfForever, length: passMs * passesOfForever };
    }
    const passes = Math.max(1, plays.loopCount + 1);
    return { passes, length: passMs * passes - delays.at(-1), last: costumes.length - 1 };
}

const files = process.argv.slice(2);
if (files.length === 0 || files.length % 2 !== 0) {
    console.error('usage: measure-play.mjs PACKAGE EXPECTATION.json [...]');
    process.exit(2);
}
const stage = await StageBrowser.open();
try {
    for (let index = 0; index < files.length; index += 2) {
        const [path, expectationPath] = files.slice(index, index + 2);
        const { sprites: [sprite] } = JSON.parse(await readFile(expectationPath, 'utf8'));
        const wanted = wantedOf(sprite);
        await stage.load(path);
        const taken = await stage.playTime(wanted);
        const isRight = Math.abs(taken - wanted.length) <= wanted.length / 100 + stepTime;
        console.log(`${isRight ? 'ok  ' : 'FAIL'}  ${path}: ${wanted.passes} passes take ` +
            `${taken.toFixed(0)} ms, should take ${wanted.length} ms`);
        process.exitCode = isRight ? process.exitCode : 1;
    }
} finally {
    await stage.close();
}
