// check-web-page.mjs FLIPBOOK SAMPLES PAGES FOLDER
//
// Lets flipbook write web pages into FOLDER and looks at them in headless Chromium: every pixel, the
// times of films, clicks and keys. PAGES has the documents upright.flipbook and turned.flipbook.
// Status 0: all is well, 1: something is not, 77: there is no Chromium here.
import { mkdir, readFile, rm } from 'node:fs/promises';
import path from 'node:path';
import { comparePictures } from '../scratch/client/picture.mjs';
import { Report } from '../scratch/client/report.mjs';
import { startBrowser } from './browser.mjs';
import { onWhite, opacityAt, Pages } from './pages.mjs';
import { WebPage } from './web-page.mjs';

const [flipbook, samples, documents, folder] = process.argv.slice(2);
if (!folder) {
    console.error('usage: check-web-page.mjs FLIPBOOK SAMPLES PAGES FOLDER');
    process.exit(2);
}

const whole = { width: 960, height: 720 };
const report = new Report();
const pages = new Pages(flipbook, samples, folder);
let browser;

/** The pixels of a page against flipbook's own, with the largest differences allowed. */
async function checkPixels(document, name, size, { tolerance, mean }) {
    const expected = await pages.rendered(document);
    const page = await WebPage.open(browser, pages.write(document, name), size);
    const { largest, mean: means, worst, at } = comparePictures(await page.picture(), expected);
    const told = `largest difference ${worst}, mean ${Math.max(...means).toFixed(4)}`;
    report.check(`${name}: pixels of the page (${told})`,
        worst <= tolerance && Math.max(...means) <= mean,
        `channels differ by ${largest}, most at ${at}`);
    report.compare(`${name}: complaints`, page.complaints, []);
    await page.close();
}

async function checkAllPixels() {
    for (const [name, tolerance, mean] of [['upright', 20, 0.1], ['turned', 20, 0.1]]) {
        await checkPixels(path.join(documents, `${name}.flipbook`), name, whole,
            { tolerance, mean });
    }
    const background = await pages.document('background', ['tile.png', 'walk.gif'],
        (page, [tile, walk]) => {
            page.rect = [0, 0, 400, 300];
            tile.Position = [-30, -10];
            tile.Size = [200, 150];
            tile.OtherParams.animatedType = { int: 1 };
            walk.Position = [150, 100];
        });
    await checkPixels(background, 'background', { width: 400, height: 300 },
        { tolerance: 12, mean: 0.1 });
}

/** The number of the frame that a picture shows. */
function frameShown(picture, frames) {
    return frames.findIndex(frame => comparePictures(picture, frame).worst <= 2);
}

// Durations of the frames of uneven.gif.
const uneven = [800, 50, 100, 50, 400, 200, 600, 50, 200, 600, 50];

/** Each picture shows a frame that was due since the picture of the screen before it. */
async function checkTimes() {
    const film = pages.sample('uneven.gif');
    const frames = (await pages.frames(film)).map(onWhite);
    const page = await WebPage.open(browser, pages.write(film, 'uneven'),
        { width: 128, height: 132 }, { stopsClock: true });
    const pass = uneven.reduce((sum, delay) => sum + delay, 0);
    const dueAt = time => {
        let rest = ((time % pass) + pass) % pass;
        return uneven.findIndex(delay => (rest -= delay) < 0);
    };
    await page.tab.keyboard.press('Tab');
    await page.tab.keyboard.press('Space');
    // Pictures of the screen are 16 or 17 ms apart.
    const screen = 17;
    const step = 23;
    const isLike = (one, other) => comparePictures(frames[one], frames[other]).worst <= 2;
    const wrong = [];
    const seen = new Set();
    // The eleventh pass is looked at as well: the nine between do not lose a millisecond.
    for (let time = step; time < 11 * pass; time += step) {
        await page.letTimePass(step);
        if (time > pass && time < 10 * pass) {
            await page.letTimePass(9 * pass);
            time += 9 * pass;
        }
        const frame = frameShown(await page.picture(), frames);
        const due = [dueAt(time), dueAt(Math.max(0, time - screen))];
        seen.add(frame);
        if (frame < 0 || !due.some(number => isLike(number, frame))) {
            wrong.push({ time, frame, due });
        }
    }
    report.compare('uneven: frames at other times than in the film', wrong, []);
    report.check('uneven: more than half of its frames were seen', seen.size > frames.length / 2);
    report.compare('uneven: complaints', page.complaints, []);
    await page.close();
}

async function checkEnd() {
    const film = await pages.document('twice', ['loop-three.gif'], (page, [state]) => {
        state.LoopCount = 1;
        state.ShiftInterval = 250;
    });
    const page = await WebPage.open(browser, pages.write(film, 'twice'), whole,
        { startsPlaying: true, stopsClock: true });
    const started = await page.playing();
    const begin = await page.picture();
    const { length } = await pages.frames(film);
    await page.letTimePass(2 * length * 250 - 100);
    const last = await page.playing();
    const shown = await page.picture();
    await page.letTimePass(150);
    report.compare('twice: plays at the start, during its last frame, and afterwards',
        [started, last, await page.playing()], [[true], [true], [false]]);
    report.check('twice: rests on its last frame, which is not the first',
        comparePictures(shown, await page.picture()).worst === 0 &&
            comparePictures(shown, begin).worst > 0);
    await page.press('Tab');
    await page.press('Enter');
    report.compare('twice: plays again with Enter', await page.playing(), [true]);
    await page.close();
}

/** A walk below the same walk, mirrored and 40 units to the right; a pinwheel apart, turned. */
async function checkClicks() {
    const document = await pages.document('clicks', ['walk.gif', 'walk.gif', 'loop-forever.gif'],
        (page, [below, above, turned]) => {
            page.rect = [0, 0, 640, 300];
            below.Position = [0, 0];
            above.Position = [40, 0];
            above.Mirror = true;
            turned.Position = [400, 100];
            turned.RotateDegree = 90;
        });
    const [walk] = await pages.frames(pages.sample('walk.gif'));
    const [pinwheel] = await pages.frames(pages.sample('loop-forever.gif'));
    // Number of the topmost object that is opaque at a point of the page.
    const hitAt = (x, y) => {
        const turnedX = (y + 0.5 - 170) + 56;
        const turnedY = 70 - (x + 0.5 - 456);
        if (turnedX >= 0 && turnedX < 112 && turnedY >= 0 && turnedY < 140) {
            return opacityAt(pinwheel, Math.floor(turnedX), Math.floor(turnedY)) > 0 ? 2 : -1;
        }
        if (x >= 40 && x < 200 && y < 160 && opacityAt(walk, 159 - (x - 40), y) > 0) {
            return 1;
        }
        return x < 160 && y < 160 && opacityAt(walk, x, y) > 0 ? 0 : -1;
    };
    const page = await WebPage.open(browser, pages.write(document, 'clicks'),
        { width: 640, height: 300 }, { stopsClock: true });
    const wrong = [];
    const count = new Map();
    for (let y = 3; y < 300; y += 19) {
        for (let x = 2; x < 640; x += 23) {
            const hit = hitAt(x, y);
            // The pointer is between four pixels.
            if ([hitAt(x - 1, y), hitAt(x, y - 1), hitAt(x - 1, y - 1)].some(at => at !== hit)) {
                continue;
            }
            count.set(hit, (count.get(hit) ?? 0) + 1);
            await page.click(x, y);
            const found = await page.playing();
            if (found.some((plays, index) => plays !== (index === hit))) {
                wrong.push({ x, y, hit, found });
            }
            // Back to its first frame, where all was measured.
            if (found.includes(true)) {
                await page.tab.locator('button').nth(found.indexOf(true)).focus();
                await page.press('Space');
            }
        }
    }
    report.compare('clicks: points where another object is played', wrong, []);
    report.check('clicks: each object and the paper were hit',
        [-1, 0, 1, 2].every(hit => (count.get(hit) ?? 0) > 3), JSON.stringify([...count]));
    report.compare('clicks: complaints', page.complaints, []);
    await page.close();
}

async function checkKeys() {
    const document = await pages.document('keys', ['tile.png', 'walk.gif'], (page, [tile, walk]) => {
        page.rect = [0, 0, 300, 200];
        tile.Position = [0, 0];
        tile.Size = [300, 200];
        tile.OtherParams.animatedType = { int: 1 };
        walk.Position = [-400, 0];
    });
    const page = await WebPage.open(browser, pages.write(document, 'keys'),
        { width: 300, height: 200 });
    const before = await page.picture();
    await page.press('ArrowRight');
    await page.press('ArrowUp');
    const after = await page.picture();
    const moved = Buffer.alloc(before.data.length);
    for (let y = 0; y < 200; ++y) {
        for (let x = 0; x < 300; ++x) {
            const from = (((y + 20) % 200) * 300 + (x + 280) % 300) * 4;
            before.data.copy(moved, (y * 300 + x) * 4, from, from + 4);
        }
    }
    report.compare('keys: pixels of the pattern, 20 to the right and 20 up, that differ most by',
        comparePictures(after, { ...before, data: moved }).worst, 0);
    report.check('keys: the pattern has moved', comparePictures(before, after).worst > 20);
    await page.press('ArrowLeft');
    await page.press('ArrowDown');
    report.compare('keys: there and back',
        comparePictures(before, await page.picture()).worst, 0);
    await page.tab.mouse.move(100, 100);
    await page.tab.mouse.down();
    await page.tab.mouse.move(112, 100);
    await page.tab.mouse.move(120, 80);
    await page.tab.mouse.up();
    await page.painted();
    report.compare('keys: dragging by the same way gives the same',
        comparePictures(after, await page.picture()).worst, 0);
    await page.close();
}

async function checkNames() {
    const hostile = '</script><script>alert(1)</script><img src=http://127.0.0.1/ onerror=alert(2)>';
    const document = await pages.document('names', ['walk.gif', 'apple.png'],
        (page, [walk, apple]) => {
            walk.OtherParams.object_name = { QString: hostile };
            apple.OtherParams.object_name = { QString: '@SCRIPT@ & "apple"' };
        });
    const page = await WebPage.open(browser, pages.write(document, 'names <b>&'), whole,
        { startsPlaying: true });
    report.compare('names: of the page', await page.tab.title(), 'names');
    report.compare('names: of the objects, as they are',
        await page.tab.$$eval('.object', all => all.map(each =>
            [each.tagName, each.getAttribute('role'), each.getAttribute('aria-label')])),
        [['BUTTON', null, hostile], ['DIV', 'img', '@SCRIPT@ & "apple"']]);
    report.compare('names: starts playing', await page.playing(), [true]);
    report.compare('names: elements of the names',
        await page.tab.$$eval('img, main script', all => all.length), 0);
    report.compare('names: complaints', page.complaints, []);
    await page.close();
}

async function checkSharing() {
    const document = await pages.document('twins', ['walk.gif', 'walk.gif'], () => {});
    const text = await readFile(pages.write(document, 'twins'), 'utf8');
    const data = JSON.parse(text.match(/id="data">(.*?)<\/script>/s)[1]);
    report.compare('twins: pictures, and frames of both',
        [data.pictures.length, data.objects.map(({ frames }) => frames.length)], [12, [12, 12]]);
}

await rm(folder, { recursive: true, force: true });
await mkdir(folder, { recursive: true });
browser = await startBrowser();
try {
    for (const check of [checkAllPixels, checkTimes, checkEnd, checkClicks, checkKeys, checkNames,
        checkSharing]) {
        await report.attempt(check.name, check);
    }
} finally {
    await browser.close();
}
report.print('web pages');
process.exit(report.passed ? 0 : 1);
