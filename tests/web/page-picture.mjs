// page-picture.mjs FLIPBOOK SAMPLES OUT.png
//
// Writes what Chromium shows of a web page with three samples: a background that was scrolled, a
// walk, and an owl that has the keyboard's focus.
import { mkdtemp, rm } from 'node:fs/promises';
import os from 'node:os';
import path from 'node:path';
import { startBrowser } from './browser.mjs';
import { Pages } from './pages.mjs';
import { WebPage } from './web-page.mjs';

const [flipbook, samples, output] = process.argv.slice(2);
const size = { width: 640, height: 320 };
const folder = await mkdtemp(path.join(os.tmpdir(), 'web-picture-'));
const browser = await startBrowser();
try {
    const pages = new Pages(flipbook, samples, folder);
    const document = await pages.document('meadow', ['tile.png', 'walk.gif', 'uneven.gif'],
        (page, [tile, walk, owl]) => {
            page.rect = [0, 0, size.width, size.height];
            tile.Position = [0, 0];
            tile.Size = [size.width, size.height];
            tile.OtherParams.animatedType = { int: 1 };
            walk.Position = [80, 70];
            walk.Size = [240, 240];
            owl.Position = [440, 120];
            owl.Size = [160, 165];
        });
    const page = await WebPage.open(browser, pages.write(document, 'meadow'), size,
        { stopsClock: true });
    await page.press('Tab');
    await page.press('Tab');
    await page.press('Space');
    await page.press('ArrowRight');
    await page.letTimePass(1000);
    await page.tab.screenshot({ path: output });
    await page.close();
} finally {
    await browser.close();
    await rm(folder, { recursive: true });
}
