// Documents and pages, made by flipbook.
import { execFileSync } from 'node:child_process';
import { readFile, writeFile } from 'node:fs/promises';
import path from 'node:path';
import { installed } from '../scratch/client/installed.mjs';
import { readPicture } from '../scratch/client/picture.mjs';

export class Pages {
    constructor(flipbook, samples, folder) {
        this.flipbook = flipbook;
        this.samples = samples;
        this.folder = folder;
    }

    file(name) {
        return path.join(this.folder, name);
    }

    sample(name) {
        return path.join(this.samples, name);
    }

    run(...options) {
        execFileSync(this.flipbook, options,
            { env: { ...process.env, QT_QPA_PLATFORM: 'offscreen' }, stdio: 'inherit' });
    }

    /** The page of a document or film. */
    write(input, name) {
        const output = this.file(`${name}.html`);
        this.run('web', input, '-o', output);
        return output;
    }

    /** How flipbook itself paints a page when it is presented. */
    async rendered(document) {
        const output = this.file('rendered.png');
        this.run('render', document, '--presented', '-o', output);
        return readPicture(output);
    }

    /** The frames of a film. A film is asked for once. */
    async frames(film) {
        const folder = this.file(`${path.parse(film).name} frames`);
        this.run('frames', film, '-o', folder);
        const { ImageList: list } =
            JSON.parse(await readFile(path.join(folder, 'config.json'), 'utf8'));
        return Promise.all(list.map(({ filename }) => readPicture(path.join(folder, filename))));
    }

    /** A document with these films; `change` gets the page and the states of its objects. */
    async document(name, films, change) {
        const document = this.file(`${name}.flipbook`);
        this.run('new', document, '--force',
            ...films.flatMap(film => ['--add', this.sample(film)]));
        const zip = await installed('jszip').loadAsync(await readFile(document));
        const json = JSON.parse(await zip.file('document.json').async('string'));
        const [page] = json.pages;
        change(page, page.objects.map(({ state }) => state));
        zip.file('document.json', JSON.stringify(json));
        await writeFile(document, await zip.generateAsync({ type: 'nodebuffer' }));
        return document;
    }
}

/** A picture with alpha as it is seen on white paper. */
export function onWhite({ width, height, data }) {
    const result = Buffer.alloc(data.length, 255);
    for (let at = 0; at < data.length; at += 4) {
        const opacity = data[at + 3] / 255;
        for (let channel = 0; channel < 3; ++channel) {
            result[at + channel] =
                Math.round(data[at + channel] * opacity + 255 * (1 - opacity));
        }
    }
    return { width, height, data: result };
}

/** The opacity of a pixel. */
export function opacityAt({ width, data }, x, y) {
    return data[(y * width + x) * 4 + 3];
}
