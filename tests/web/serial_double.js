// SPDX-License-Identifier: MIT
/* In place of the browser's serial ports: ports that the test holds the other end of. Set before the page loads:
   serialDouble = {granted: [{usbVendorId, usbProductId} | {}], chosen: index or -1}; the test answers `serialCall`. */
(() => {
    const setup = self.serialDoubleSetup ?? { granted: [], chosen: -1 };
    const waiting = new Map();
    let calls = 0;
    const call = (request) =>
        new Promise((resolve, reject) => {
            waiting.set(++calls, (error) => (error ? reject(new DOMException("", error)) : resolve()));
            self.serialCall(JSON.stringify({ ...request, call: calls }));
        });

    class Port extends EventTarget {
        constructor(number, info) {
            super();
            this.number = number;
            this.info = info;
            this.readable = this.writable = null;
        }
        getInfo() {
            return this.info;
        }
        async open({ baudRate }) {
            if (this.readable) throw new DOMException("The port is already open.", "InvalidStateError");
            await call({ kind: "open", port: this.number, rate: baudRate });
            this.readable = new ReadableStream({
                start: (controller) => void (this.incoming = controller),
                cancel: () => void (this.incoming = null),
            });
            this.writable = new WritableStream({
                write: (chunk) =>
                    call({ kind: "write", port: this.number, data: btoa(String.fromCharCode(...new Uint8Array(chunk))) }),
            });
        }
        async close() {
            if (this.readable?.locked || this.writable?.locked) throw new TypeError("Cannot close a locked port");
            this.readable = this.writable = null;
            await call({ kind: "close", port: this.number });
        }
    }

    const ports = setup.granted.map((info, number) => new Port(number, info));
    const forbidden = new Set(setup.hidden ?? []);
    const serial = new EventTarget();
    serial.getPorts = async () => ports.filter((port) => !forbidden.has(port.number));
    serial.requestPort = async () => {
        if (self.serialDouble.chosen < 0) throw new DOMException("No port selected by the user.", "NotFoundError");
        forbidden.delete(self.serialDouble.chosen);
        return ports[self.serialDouble.chosen];
    };
    Object.defineProperty(Navigator.prototype, "serial", { configurable: true, get: () => serial });
    self.serialDouble = {
        chosen: setup.chosen ?? -1,
        answer(number, error) {
            waiting.get(number)(error);
            waiting.delete(number);
        },
        bytes(number, data) {
            ports[number].incoming?.enqueue(Uint8Array.from(atob(data), (character) => character.charCodeAt(0)));
        },
        pullOut(number) {
            const port = ports[number];
            port.incoming?.error(new DOMException("The device has been lost.", "NetworkError"));
            forbidden.add(number);
            const event = new Event("disconnect");
            Object.defineProperty(event, "target", { value: port });
            serial.dispatchEvent(event);
        },
    };
})();
