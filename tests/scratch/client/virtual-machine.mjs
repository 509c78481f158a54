// The official virtual machine in Node.js, with a package loaded.
import { bitmapAdapter, installBrowserGlobals, SizeKeepingRenderer } from './browser-stand-ins.mjs';
import { installed } from './installed.mjs';
import { emptyProject } from './package-parts.mjs';

function makeMachine() {
    installBrowserGlobals();
    const VirtualMachine = installed('scratch-vm');
    // Each further machine in a process warns that it replaces the one before.
    installed('minilog').suggest.deny('vm', 'warn');
    const { ScratchStorage } = installed('scratch-storage');
    const machine = new VirtualMachine();
    machine.attachStorage(new ScratchStorage());
    machine.attachRenderer(new SizeKeepingRenderer());
    machine.attachV2BitmapAdapter(bitmapAdapter);
    return machine;
}

/** A copy of the bytes in a buffer of their own, which is what the machine takes. */
function arrayBuffer(bytes) {
    return new Uint8Array(bytes).buffer;
}

/**
 * Loads an opened package into a fresh virtual machine, a sprite into an empty project. Gives the
 * machine; throws the client's reason when the client refuses the package.
 */
export async function loadIntoMachine({ bytes, isSprite }) {
    const machine = makeMachine();
    if (isSprite) {
        await machine.loadProject(arrayBuffer(await emptyProject()));
        await machine.addSprite(arrayBuffer(bytes));
    } else {
        await machine.loadProject(arrayBuffer(bytes));
    }
    return machine;
}

/** The sprites of a machine, in the order in which they were loaded; the stage is none. */
export function spritesOf(machine) {
    return machine.runtime.targets.filter(target => target.isOriginal && !target.isStage);
}
