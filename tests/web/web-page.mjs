// A page that "flipbook web" wrote, in headless Chromium.
import { pathToFileURL } from 'node:url';

const patience = 20000;

export class WebPage {
    /** What the page asked of any network, and what the browser complained about. */
    complaints = [];

    /**
     * Opens the page at `path` in a window of this size. `startsPlaying`: the user does not ask for
     * reduced motion. `stopsClock`: time passes only with letTimePass().
     */
    static async open(browser, path, { width, height }, { startsPlaying, stopsClock } = {}) {
        const page = new WebPage();
        page.context = await browser.newContext({
            viewport: { width, height }, deviceScaleFactor: 1,
            reducedMotion: startsPlaying ? 'no-preference' : 'reduce'
        });
        page.context.setDefaultTimeout(patience);
        page.tab = await page.context.newPage();
        const { tab, complaints } = page;
        tab.on('console', message => {
            // Advice on reading the canvas, which only this test does.
            if (!message.text().includes('willReadFrequently')) {
                complaints.push(message.text());
            }
        });
        tab.on('pageerror', error => complaints.push(error.message));
        tab.on('dialog', dialog => complaints.push(`a dialog: ${dialog.message()}`));
        tab.on('request', request => {
            if (!/^(file|data):/.test(request.url())) {
                complaints.push(`a request: ${request.url()}`);
            }
        });
        if (stopsClock) {
            await tab.clock.install({ time: 0 });
            await tab.clock.pauseAt(1000);
        }
        await tab.goto(pathToFileURL(path).href);
        await tab.waitForSelector('.object', { state: 'attached' });
        page.stopsClock = stopsClock;
        await page.painted();
        return page;
    }

    /** Returns when what was asked for before is on the canvas. */
    async painted() {
        if (this.stopsClock) {
            await this.letTimePass(20);
        } else {
            await this.tab.evaluate(() => new Promise(resolve =>
                requestAnimationFrame(() => requestAnimationFrame(resolve))));
        }
    }

    letTimePass(ms) {
        return this.tab.clock.runFor(ms);
    }

    /** What the canvas shows: { width, height, data }. */
    async picture() {
        const { width, height, base64 } = await this.tab.evaluate(() => {
            const canvas = document.querySelector('canvas');
            const { data } =
                canvas.getContext('2d').getImageData(0, 0, canvas.width, canvas.height);
            let text = '';
            for (let at = 0; at < data.length; at += 0x8000) {
                text += String.fromCharCode(...data.subarray(at, at + 0x8000));
            }
            return { width: canvas.width, height: canvas.height, base64: btoa(text) };
        });
        return { width, height, data: Buffer.from(base64, 'base64') };
    }

    /** Whether each film plays, by what screen readers are told. */
    playing() {
        return this.tab.$$eval('button', buttons =>
            buttons.map(button => button.getAttribute('aria-pressed') === 'true'));
    }

    async click(x, y) {
        await this.tab.mouse.click(x, y);
        await this.painted();
    }

    async press(key) {
        await this.tab.keyboard.press(key);
        await this.painted();
    }

    async close() {
        await this.context.close();
    }
}
