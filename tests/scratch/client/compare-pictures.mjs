// compare-pictures.mjs A.png B.png [--tolerance N]
//
// Prints the largest and the mean difference of each channel in levels of 255. Status 0: none above
// the tolerance (default 0), 1: there is one, or the sizes differ, 2: called wrongly.
import { parseArgs } from 'node:util';
import { comparePictures, readPicture } from './picture.mjs';

const { values, positionals } = parseArgs({
    allowPositionals: true,
    options: { tolerance: { type: 'string', default: '0' } }
});
const tolerance = Number(values.tolerance);
if (positionals.length !== 2 || !(tolerance >= 0)) {
    console.error('usage: compare-pictures.mjs A.png B.png [--tolerance N]');
    process.exit(2);
}

try {
    const [a, b] = await Promise.all(positionals.map(readPicture));
    const { largest, mean, worst, at } = comparePictures(a, b);
    ['red', 'green', 'blue', 'opacity'].forEach((channel, index) => {
        console.log(`${channel}: largest ${largest[index]}, mean ${mean[index].toFixed(4)}`);
    });
    if (worst > tolerance) {
        console.log(`FAIL  at ${at.join(', ')} they differ by ${worst}, more than ${tolerance}`);
        process.exit(1);
    }
    console.log('ok');
} catch (error) {
    console.log(`FAIL  ${error.message}`);
    process.exit(1);
}
