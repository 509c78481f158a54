// The official renderer in headless Chromium: packages in, pictures of the stage out.
import { existsSync } from 'node:fs';
import { readFile } from 'node:fs/promises';
import { installed } from './installed.mjs';
import { isSpritePath } from './package-file.mjs';
import { StageServer } from './stage-server.mjs';

const chromiumPath = process.env.CHROMIUM ?? '/usr/bin/chromium';
// WebGL without a graphics card; nothing that calls home.
const flags = [
    '--use-gl=angle', '--use-angle=swiftshader', '--enable-unsafe-swiftshader', '--no-sandbox',
    '--disable-quic', '--no-first-run', '--disable-background-networking',
    '--disable-component-update', '--disable-sync'
];
const patience = 30000;

/** At this size of the stage one pixel of a costume is one pixel of the picture. */
export const pixelForPixel = { width: 960, height: 720 };

export class StageBrowser {
    #server = new StageServer();
    #browser;
    #page;

    /**
     * Opens a browser with a stage of this size. Where there is no Chromium the process ends here,
     * with the status that means "skipped".
     */
    static async open({ width, height } = pixelForPixel) {
        if (!existsSync(chromiumPath)) {
            console.error(`*** SKIPPED, NOTHING CHECKED: there is no ${chromiumPath} ` +
                '(Debian: apt install chromium)');
            process.exit(77);
        }
        const stage = new StageBrowser();
        try {
            await stage.#start(width, height);
        } catch (error) {
            await stage.close();
            throw error;
        }
        return stage;
    }

    async #start(width, height) {
        await this.#server.start();
        this.#browser = await installed('playwright-core').chromium.launch({
            executablePath: chromiumPath, args: flags, headless: true, timeout: patience
        });
        const context = await this.#browser.newContext();
        context.setDefaultTimeout(patience);
        await context.route(address => !address.href.startsWith(this.#server.address),
            route => route.fulfill({ status: 204 }));
        this.#page = await context.newPage();
        this.#page.on('pageerror', error => console.error(`in the page: ${error.message}`));
        await this.#page.goto(this.#server.address);
        await this.#page.evaluate(([w, h]) => { window.stage = new window.Stage(w, h); },
            [width, height]);
    }

    /** Loads a package. Gives its sprites: name, x, y, size, currentCostume, costumes, broken. */
    async load(path) {
        this.#server.packageBytes = await readFile(path);
        return this.#page.evaluate(isSprite => window.stage.load(isSprite), isSpritePath(path));
    }

    /** Lets a sprite (by its number) show a costume. */
    async showCostume(sprite, costume) {
        await this.#page.evaluate(([s, c]) => window.stage.showCostume(s, c), [sprite, costume]);
    }

    /** Plays by the browser's own clock; see Stage.playTime(). */
    playTime(wanted) {
        return this.#page.evaluate(w => window.stage.playTime(w), wanted);
    }

    /** Gives the stage another size; what it shows grows with it. */
    async resize({ width, height }) {
        await this.#page.evaluate(([w, h]) => window.stage.resize(w, h), [width, height]);
    }

    /** Hides all other sprites; this one is shown unturned and at its full size. */
    async showAlone(sprite) {
        await this.#page.evaluate(index => window.stage.showAlone(index), sprite);
    }

    /** The stage as it is drawn now. */
    async picture() {
        const { width, height, base64 } = await this.#page.evaluate(() => window.stage.pixels());
        const upsideDown = Buffer.from(base64, 'base64');
        const stride = width * 4;
        const data = Buffer.alloc(upsideDown.length);
        for (let y = 0; y < height; ++y) {
            upsideDown.copy(data, y * stride, (height - 1 - y) * stride, (height - y) * stride);
        }
        return { width, height, data };
    }

    /** Ends the browser and the server; nothing of them is left behind. */
    async close() {
        await this.#browser?.close();
        this.#server.stop();
    }
}
