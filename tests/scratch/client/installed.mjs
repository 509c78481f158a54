// The packages of the install, which is outside the sources.
import { createRequire } from 'node:module';
import path from 'node:path';

const folder = path.resolve(process.env.SCRATCH_CLIENT ?? '.');
const fromInstall = createRequire(path.join(folder, 'package.json'));

/** The package of this name, from the install. */
export function installed(name) {
    return fromInstall(name);
}

/** The path of a file of the packages, such as "scratch-vm/dist/web/scratch-vm.js". */
export function installedFile(relativePath) {
    return path.join(folder, 'node_modules', relativePath);
}
