// Headless Chromium.
import { existsSync } from 'node:fs';
import { installed } from '../scratch/client/installed.mjs';

const chromium = process.env.CHROMIUM ?? '/usr/bin/chromium';

/** Starts a browser. Where there is none the process ends here, with the status for "skipped". */
export function startBrowser() {
    if (!existsSync(chromium)) {
        console.error(`*** SKIPPED, NOTHING CHECKED: there is no ${chromium} ` +
            '(Debian: apt install chromium)');
        process.exit(77);
    }
    return installed('playwright-core').chromium.launch({
        executablePath: chromium, headless: true, timeout: 30000,
        args: ['--no-sandbox', '--disable-gpu', '--disable-background-networking',
            '--disable-component-update', '--no-first-run', '--force-color-profile=srgb']
    });
}
