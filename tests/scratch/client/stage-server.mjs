// Serves the page with the client, and the package that it shows, on this machine alone.
import { readFile } from 'node:fs/promises';
import http from 'node:http';
import { fileURLToPath } from 'node:url';
import { installedFile } from './installed.mjs';
import { emptyProject } from './package-parts.mjs';

const scripts = {
    '/scratch-storage.js': installedFile('scratch-storage/dist/web/scratch-storage.min.js'),
    '/scratch-svg-renderer.js':
        installedFile('scratch-svg-renderer/dist/web/scratch-svg-renderer.js'),
    '/scratch-render.js': installedFile('scratch-render/dist/web/scratch-render.min.js'),
    '/scratch-vm.js': installedFile('scratch-vm/dist/web/scratch-vm.js'),
    '/stage-page.js': fileURLToPath(new URL('stage-page.js', import.meta.url))
};
const page = `<!DOCTYPE html><meta charset="utf-8"><title>Stage</title><canvas id="stage"></canvas>
${Object.keys(scripts).map(address => `<script src="${address}"></script>`).join('\n')}`;

/** A server with the page at `address`; `packageBytes` is what the page gets as the package. */
export class StageServer {
    packageBytes = Buffer.alloc(0);
    #server = http.createServer((request, response) => this.#answer(request, response));

    async start() {
        await new Promise((resolve, reject) => {
            this.#server.once('error', reject);
            this.#server.listen(0, '127.0.0.1', resolve);
        });
        this.address = `http://127.0.0.1:${this.#server.address().port}/`;
    }

    stop() {
        this.#server.close();
        this.#server.closeAllConnections();
    }

    async #answer({ url }, response) {
        if (url === '/') {
            response.setHeader('Content-Type', 'text/html').end(page);
        } else if (url in scripts) {
            response.setHeader('Content-Type', 'text/javascript').end(await readFile(scripts[url]));
        } else if (url === '/package') {
            response.end(this.packageBytes);
        } else if (url === '/empty') {
            response.end(await emptyProject());
        } else {
            response.writeHead(204).end();
        }
    }
}
